#pragma once

#include <cstdint>

#include "foundation/log/indent_attribute.h"

namespace storage::javaprovider::test {

/// The severities of what a traced function writes, as bits of a channel's mask.
inline constexpr std::uint32_t Enter = 32;
inline constexpr std::uint32_t Exit = 64;

/// How deep the calling thread's records are indented.
inline unsigned depth() { return foundation::log::detail::indent_attribute::depth(); }

}  // namespace storage::javaprovider::test
