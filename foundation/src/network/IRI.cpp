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

/// What a URI may hold wherever it stands; `%`, `#` and brackets depend on their place.
constexpr auto PlainChars =
    urls::unreserved_chars + urls::sub_delim_chars + (urls::gen_delim_chars - urls::grammar::lut_chars("#[]"));

/// Eight UTF-16 units, looked at together.
using Units = std::uint16_t __attribute__((vector_size(16)));
constexpr std::size_t UnitCount = sizeof(Units) / sizeof(char16_t);

/// All bits of a unit set where it is a letter, a digit, or one of `-./:_~`: the ones of the PlainChars that locations
/// are mostly made of.
Units areCommon(Units units) noexcept {
    constexpr auto all = [](char16_t unit) { return Units{} + static_cast<std::uint16_t>(unit); };
    const auto isWithin = [&all](Units values, char16_t first, char16_t last) {
        return values - all(first) <= all(static_cast<char16_t>(last - first));
    };
    return isWithin(units | all(0x20), u'a', u'z') | isWithin(units, u'-', u':') | (units == all(u'_')) |
           (units == all(u'~'));
}

/// Whether the text is in strict ASCII form as it stands. Says no of some that are; those take the longer way.
bool isPlainAscii(std::u16string_view text) noexcept {
    if (text.size() < UnitCount) {
        return false;
    }
    const auto at = [text](std::size_t index) {
        Units units;
        std::memcpy(&units, text.data() + index, sizeof(units));
        return areCommon(units);
    };
    // The last units are looked at in any case, some of them twice.
    const std::size_t last = text.size() - UnitCount;
    Units common = at(last);
    for (std::size_t index = 0; index < last; index += UnitCount) {
        common &= at(index);
    }
    std::array<std::uint64_t, 2> halves{};
    std::memcpy(halves.data(), &common, sizeof(common));
    return (halves[0] & halves[1]) == ~std::uint64_t{0};
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

    /// Encodes the character at `at`; where the next one begins.
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

// The text that is given is looked at, not the copy: a look at what was just written would wait for it.
IRI::IRI(const std::u16string& text) : m_text(text), m_plain(isPlainAscii(text)) {}

IRI::IRI(std::u16string&& text) noexcept : m_text(std::move(text)), m_plain(isPlainAscii(m_text)) {}

std::u16string IRI::toAsciiString(bool strict) const& { return m_plain ? m_text : AsciiForm(m_text, strict).write(); }

std::u16string IRI::toAsciiString(bool strict) && {
    return m_plain ? std::move(m_text) : AsciiForm(m_text, strict).write();
}

}  // namespace foundation::network
