#pragma once

#include <string>

#include "foundation/Export.h"

namespace foundation::network {

/// An internationalised resource identifier: UTF-16 text, kept as it was given.
///
/// An immutable value; any number of threads may read one.
class FOUNDATION_API IRI {
public:
    IRI() = default;
    explicit IRI(const std::u16string& text);
    explicit IRI(std::u16string&& text) noexcept;

    [[nodiscard]] const std::u16string& text() const noexcept { return m_text; }

    /// The identifier in ASCII: whatever is not ASCII is percent-encoded as UTF-8 (a lone surrogate as U+FFFD).
    ///
    /// `strict` true gives RFC 3986 text: ASCII that a URI may not hold at its place (space, controls, `"<>\^`{|}`, a
    /// `%` that starts no escape, brackets outside the host, a second `#`) is encoded too; false leaves ASCII as it is.
    /// Escapes already there are kept as they stand. Text that needs nothing is copied straight; a temporary gives its
    /// own away.
    [[nodiscard]] std::u16string toAsciiString(bool strict) const&;
    [[nodiscard]] std::u16string toAsciiString(bool strict) &&;

    [[nodiscard]] bool operator==(const IRI& other) const noexcept { return m_text == other.m_text; }

private:
    std::u16string m_text;
    bool m_plain = false;  ///< the text is known to be in strict ASCII form as it stands
};

}  // namespace foundation::network
