#include "foundation/network/IRI.h"

#include <boost/url/authority_view.hpp>
#include <boost/url/parse.hpp>
#include <boost/url/rfc/gen_delim_chars.hpp>
#include <boost/url/rfc/sub_delim_chars.hpp>
#include <boost/url/rfc/unreserved_chars.hpp>

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

#include "fl/i18n/text.h"
#include "i18n/utf.h"
#include "network/IriParts.h"
#include "network/percent.h"

namespace foundation::network {

namespace {

namespace urls = boost::urls;
namespace utf = fl::i18n::detail;

/// The characters that a URI may hold anywhere; whether `%`, `#` and brackets may stand depends on their place.
constexpr auto PlainChars =
    urls::unreserved_chars + urls::sub_delim_chars + (urls::gen_delim_chars - urls::grammar::lut_chars("#[]"));

/// Eight UTF-16 units, and the same bytes one by one.
using Units = std::uint16_t __attribute__((vector_size(16)));
using Bytes = std::uint8_t __attribute__((vector_size(16)));
constexpr std::size_t UnitCount = sizeof(Units) / sizeof(char16_t);

Units unitsAt(const char16_t* position) noexcept {
    Units units;
    std::memcpy(&units, position, sizeof(units));
    return units;
}

/// All bits of a byte set where it is a letter or one of `&'()*+,-./0123456789:;_~`: the ones of the PlainChars that
/// locations are mostly made of.
Bytes areCommon(Bytes bytes) noexcept {
    const auto isWithin = [](Bytes values, char first, char last) {
        return values - static_cast<std::uint8_t>(first) <= Bytes{} + static_cast<std::uint8_t>(last - first);
    };
    return isWithin(bytes | std::uint8_t{0x20}, 'a', 'z') | isWithin(bytes, '&', ';') | (bytes == '_') | (bytes == '~');
}

/// Where the brackets of an IP address in the host stand.
struct Brackets {
    std::size_t open = std::u16string_view::npos;
    std::size_t close = std::u16string_view::npos;
};

bool isPort(std::u16string_view text) noexcept {
    return text.empty() || (text[0] == u':' && text.find_first_not_of(u"0123456789", 1) == text.npos);
}

Brackets findBrackets(std::u16string_view text) {
    const std::u16string_view authority = detail::splitIri(text).authority;
    const std::size_t user = authority.rfind(u'@');
    const std::u16string_view host = user == authority.npos ? authority : authority.substr(user + 1);
    const std::size_t close = host.find(u']');
    if (!host.starts_with(u'[') || close == host.npos || !isPort(host.substr(close + 1))) {
        return {};
    }
    if (!urls::parse_authority(fl::i18n::to_string(host.substr(0, close + 1)))) {
        return {};
    }
    const auto open = static_cast<std::size_t>(host.data() - text.data());
    return {open, open + close};
}

class AsciiForm {
public:
    AsciiForm(const std::u16string& text, bool strict)
        : m_text(text),
          m_strict(strict),
          m_fragment(text.find(u'#')),
          m_brackets(text.find(u'[') == text.npos ? Brackets{} : findBrackets(text)) {}

    [[nodiscard]] std::u16string write() const {
        std::size_t stop = nextToEncode(0);
        if (stop == m_text.size()) {
            return m_text;
        }
        std::u16string out;
        out.reserve(m_text.size() + 2 * (m_text.size() - stop));
        for (std::size_t start = 0;; stop = nextToEncode(start)) {
            out.append(m_text, start, stop - start);
            if (stop == m_text.size()) {
                return out;
            }
            start = encodeOne(stop, out);
        }
    }

private:
    [[nodiscard]] bool keeps(std::size_t at) const noexcept {
        const char16_t unit = m_text[at];
        if (unit >= 0x80) {
            return false;
        }
        if (!m_strict || PlainChars(static_cast<unsigned char>(unit))) {
            return true;
        }
        switch (unit) {
            case u'%':
                return detail::startsEscape(m_text, at);
            case u'#':
                return at == m_fragment;
            default:
                return at == m_brackets.open || at == m_brackets.close;
        }
    }

    [[nodiscard]] std::size_t nextToEncode(std::size_t from) const noexcept {
        while (from < m_text.size() && keeps(from)) {
            ++from;
        }
        return from;
    }

    /// Encodes the character at `at`; returns where the next one begins.
    std::size_t encodeOne(std::size_t at, std::u16string& out) const {
        const char16_t* position = m_text.data() + at;
        const auto point = utf::takeCodePoint(position, m_text.data() + m_text.size()).value_or(utf::Replacement);
        std::array<char, utf::Traits<char>::max_width> bytes{};
        const char* const end = utf::Traits<char>::encode(point, bytes.data());
        for (const char* byte = bytes.data(); byte != end; ++byte) {
            detail::appendEscape(out, *byte);
        }
        return static_cast<std::size_t>(position - m_text.data());
    }

    const std::u16string& m_text;
    bool m_strict;
    std::size_t m_fragment;
    Brackets m_brackets;
};

}  // namespace

bool detail::isPlainAscii(std::u16string_view text) noexcept {
    if (text.size() < UnitCount) {
        return false;
    }
    // From both ends at once: wherever the two meet, the units in the middle may be looked at twice.
    const char16_t* front = text.data();
    const char16_t* back = front + text.size();
    Units all{};
    Bytes common = ~Bytes{};
    do {
        back -= UnitCount;
        const Units first = unitsAt(front);
        const Units second = unitsAt(back);
        all |= first | second;
        // Sixteen units at a time, in no order. What does not fit into a byte is found in `all`.
        common &= areCommon(reinterpret_cast<Bytes>(first | (second << 8)));
        front += UnitCount;
    } while (front < back);
    const auto rest = reinterpret_cast<Units>(~common) | (all >> 8);
    std::array<std::uint64_t, 2> halves{};
    std::memcpy(halves.data(), &rest, sizeof(rest));
    return (halves[0] | halves[1]) == 0;
}

std::u16string IRI::encode(bool strict) const { return AsciiForm(m_text, strict).write(); }

}  // namespace foundation::network
