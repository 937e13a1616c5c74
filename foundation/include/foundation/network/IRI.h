#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "foundation/Export.h"

namespace foundation::network {

namespace detail {
/// Whether the text is already in strict ASCII form. May return false even if it is; the text then takes the slow path.
[[nodiscard]] FOUNDATION_API bool isPlainAscii(std::u16string_view text) noexcept;
}  // namespace detail

/// An internationalised resource identifier: UTF-16 text, kept as it was given.
///
/// An immutable value; any number of threads may read one.
class FOUNDATION_API IRI {
public:
    IRI() = default;
    // Scans the argument, not the fresh copy: reading bytes that were just stored would stall (store forwarding).
    explicit IRI(const std::u16string& text) : m_text(text), m_plain(detail::isPlainAscii(text)) {}
    explicit IRI(std::u16string&& text) noexcept : m_text(std::move(text)), m_plain(detail::isPlainAscii(m_text)) {}

    [[nodiscard]] const std::u16string& text() const noexcept { return m_text; }

    /// Returns the identifier in ASCII: other characters are percent-encoded as UTF-8, a lone surrogate as U+FFFD.
    ///
    /// With `strict` the result is RFC 3986 text: ASCII that a URI may not contain at that position (space, controls,
    /// `"<>\^`{|}`, a `%` that starts no escape, brackets outside the host, a second `#`) is encoded too. Without it,
    /// ASCII is left unchanged. Existing escapes are kept. Text that needs no encoding is copied, or moved out of a
    /// temporary.
    [[nodiscard]] std::u16string toAsciiString(bool strict) const& { return m_plain ? m_text : encode(strict); }
    [[nodiscard]] std::u16string toAsciiString(bool strict) && { return m_plain ? std::move(m_text) : encode(strict); }

    [[nodiscard]] bool operator==(const IRI& other) const noexcept { return m_text == other.m_text; }

private:
    [[nodiscard]] std::u16string encode(bool strict) const;

    std::u16string m_text;
    bool m_plain = false;  ///< the text is known to be in strict ASCII form already
};

}  // namespace foundation::network
