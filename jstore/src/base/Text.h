#pragma once

#include <string>
#include <string_view>

namespace jstore {

/// Whether the bytes are well-formed UTF-8.
[[nodiscard]] bool isUtf8(std::string_view bytes);

/// Whether a terminal may treat the character as a command and not as text: control characters (C0, DEL, C1), line and
/// paragraph separators, and characters that change the direction of writing.
[[nodiscard]] bool isUnsafe(char32_t character) noexcept;

/// The text as one line of UTF-8. Each run of spaces, line breaks, tabs and other control characters becomes one space,
/// and none remains at the beginning and end. Characters that change the direction of writing are percent-encoded.
/// Bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string oneLine(std::string_view text);

/// A location as one line of UTF-8 that leads to the same place: unsafe characters are percent-encoded, and bytes that
/// are not UTF-8 become U+FFFD.
[[nodiscard]] std::string printable(std::string_view location);

/// A name, or other text in which `%` means nothing, as one line of UTF-8 that no other name has: unsafe characters are
/// percent-encoded, and so is a `%` before two hexadecimal digits. Decoding the percent signs gives the name back.
[[nodiscard]] std::string printableName(std::string_view name);

/// JSON text with its unsafe characters as escapes, which mean the same. The text has no line breaks.
[[nodiscard]] std::string printableJson(std::string_view json);

}  // namespace jstore
