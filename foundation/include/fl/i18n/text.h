#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "foundation/Export.h"

/// Text conversion. Narrow text is always UTF-8, whatever the locale of the process. What is not well-formed (a lone
/// surrogate; a stray, truncated or overlong byte sequence) becomes U+FFFD, one for each maximal part that could begin
/// a well-formed sequence. These functions throw only std::bad_alloc.
namespace fl::i18n {

/// Converts UTF-16 to UTF-8.
[[nodiscard]] FOUNDATION_API std::string to_string(std::u16string_view text);

/// Converts UTF-8 to UTF-16.
[[nodiscard]] FOUNDATION_API std::u16string to_ustring(std::string_view text);

/// Writes UTF-16 text as UTF-8 to a narrow stream, as one formatted insertion. Bring it into scope with
/// `using fl::i18n::operator<<;`, because argument-dependent lookup only searches std.
FOUNDATION_API std::ostream& operator<<(std::ostream& out, const std::u16string& text);

}  // namespace fl::i18n
