#pragma once

#include <string>
#include <string_view>

namespace jstore {

/// Whether the bytes are well-formed UTF-8.
[[nodiscard]] bool isUtf8(std::string_view bytes);

/// The text as one line of UTF-8: line breaks, tabs and other control characters with the blanks around them become one
/// blank, leading and trailing ones go, and bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string oneLine(std::string_view text);

/// A name or location as one line of UTF-8 that still tells names apart: control characters are percent-encoded, and
/// bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string printable(std::string_view name);

}  // namespace jstore
