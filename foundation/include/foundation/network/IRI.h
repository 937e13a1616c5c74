#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "foundation/Export.h"

namespace foundation::network {

namespace detail {
/// Whether the text is in strict ASCII form as it stands. Says no of some that are; those take the longer way.
[[nodiscard]] FOUNDATION_API bool isPlainAscii(std::u16string_view text) noexcept;
}  // namespace detail

/// An internationalised resource identifier: UTF-16 text, kept as it was given.
///
/// An immutable value; any number of threads may read one.
class FOUNDATION_API IRI {
public:
    IRI() = default;
    // The text that is given is looked at, not the copy: a look at what was just written would wait for it.
    explicit IRI(const std::u16string& text) : m_text(text), m_plain(detail::isPlainAscii(text)) {}
    explicit IRI(std::u16string&& text) noexcept : m_text(std::move(text)), m_plain(detail::isPlainAscii(m_text)) {}

    [[nodiscard]] const std::u16string& text() const noexcept { return m_text; }

    /// The identifier in ASCII: whatever is not ASCII is percent-encoded as UTF-8 (a lone surrogate as U+FFFD).
    ///
    /// `strict` true gives RFC 3986 text: ASCII that a URI may not hold at its place (space, controls, `"<>\^`{|}`, a
    /// `%` that starts no escape, brackets outside the host, a second `#`) is encoded too; false leaves ASCII as it is.
    /// Escapes already there are kept as they stand. Text that needs nothing is copied straight; a temporary gives its
    /// own away.
    [[nodiscard]] std::u16string toAsciiString(bool strict) const& { return m_plain ? m_text : encode(strict); }
    [[nodiscard]] std::u16string toAsciiString(bool strict) && { return m_plain ? std::move(m_text) : encode(strict); }

    [[nodiscard]] bool operator==(const IRI& other) const noexcept { return m_text == other.m_text; }

private:
    [[nodiscard]] std::u16string encode(bool strict) const;

    std::u16string m_text;
    bool m_plain = false;  ///< the text is known to be in strict ASCII form as it stands
};

}  // namespace foundation::network
