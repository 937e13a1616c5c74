#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace jstore {

/// UTF-8 that a terminal shows as it is. Characters that move the cursor, change the direction of writing or have no
/// glyph become U+FFFD, as do bytes that are not UTF-8.
[[nodiscard]] std::string harmless(std::string_view text);

/// How many columns harmless text takes: 2 for wide characters, none for combining ones.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// Harmless text in at most that many columns. Longer text loses its middle, with an ellipsis there: long names often
/// differ only at their ends.
[[nodiscard]] std::string shortened(std::string_view text, std::size_t columns);

}  // namespace jstore
