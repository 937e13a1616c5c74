#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

#include "foundation/Export.h"

/// Text conversion. The narrow side is always UTF-8, whatever the process's locale says. What is not well-formed
/// (a lone surrogate, a stray, cut or overlong byte sequence) becomes U+FFFD, one for each longest part that could have
/// begun a well-formed sequence; nothing here throws but std::bad_alloc.
namespace fl::i18n {

/// UTF-16 to UTF-8.
[[nodiscard]] FOUNDATION_API std::string to_string(std::u16string_view text);

/// UTF-8 to UTF-16.
[[nodiscard]] FOUNDATION_API std::u16string to_ustring(std::string_view text);

/// Writes UTF-16 text as UTF-8 to a narrow stream, as one formatted insertion. Bring it into scope with
/// `using fl::i18n::operator<<;` (the text's own namespace is std, where lookup does not find it).
FOUNDATION_API std::ostream& operator<<(std::ostream& out, const std::u16string& text);

}  // namespace fl::i18n
