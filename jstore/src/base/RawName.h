#pragma once

#include <string>
#include <string_view>

namespace jstore {

/// The text by which the back end of local files knows a name that is these bytes: UTF-8 as it reads, and each byte
/// that is none as the character U+EF00 plus the byte. A character that stands for a byte in this way (U+EF80 to
/// U+EFFF) is itself written as its bytes, so that no two names have the same text.
[[nodiscard]] std::u16string textOfName(std::string_view bytes);

/// Whether the name holds a character that may stand for a byte.
[[nodiscard]] bool standsForBytes(std::string_view name);

/// The bytes of the name that is shown like this: each character that stands for a byte becomes the byte.
[[nodiscard]] std::string bytesOfShownName(std::string_view name);

}  // namespace jstore
