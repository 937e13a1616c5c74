#pragma once

#include <string>
#include <string_view>

namespace jstore {

/// The bytes as base64 (RFC 4648, with padding).
[[nodiscard]] std::string base64(std::string_view bytes);

}  // namespace jstore
