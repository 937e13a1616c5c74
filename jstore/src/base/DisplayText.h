#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace jstore {

/// UTF-8 that a terminal shows as it stands: what moves the cursor, changes the direction of writing or has no glyph
/// becomes U+FFFD, as do bytes that are not UTF-8.
[[nodiscard]] std::string harmless(std::string_view text);

/// How many columns harmless text takes: 2 for wide characters, none for combining ones.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// Harmless text in at most that many columns; what has no room is left out in the middle, with an ellipsis there, so
/// that the ends of long names, which tell them apart, stay.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t columns);

}  // namespace jstore
