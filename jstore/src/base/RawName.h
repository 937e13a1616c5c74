#pragma once

#include <string>
#include <string_view>

namespace jstore {

/// The text that the back end of local files uses for a name of these bytes: valid UTF-8 as it is, and each other byte
/// as the character U+EF00 plus the byte. The characters U+EF80 to U+EFFF, which stand for bytes, are themselves
/// written byte by byte, so that no two names have the same text.
[[nodiscard]] std::u16string textOfName(std::string_view bytes);

/// Whether the name holds a character that may stand for a byte.
[[nodiscard]] bool standsForBytes(std::string_view name);

/// The bytes of a name that is shown as `name`: each character that stands for a byte becomes the byte.
[[nodiscard]] std::string bytesOfShownName(std::string_view name);

}  // namespace jstore
