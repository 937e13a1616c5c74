#include "base/DisplayText.h"

#include <clocale>
#include <cwchar>
#include <vector>

#include "base/Text.h"
#include "fl/i18n/text.h"

namespace jstore {

namespace {

/// Makes the C library know the characters of Unicode on this thread, whatever the locale of the process.
class UnicodeScope {
public:
    UnicodeScope() : m_before(unicode() == nullptr ? nullptr : ::uselocale(unicode())) {}
    ~UnicodeScope() {
        if (m_before != nullptr) {
            ::uselocale(m_before);
        }
    }
    UnicodeScope(const UnicodeScope&) = delete;
    UnicodeScope& operator=(const UnicodeScope&) = delete;

private:
    /// Never freed: it serves until the process ends.
    static locale_t unicode() {
        static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;
    }

    locale_t m_before;
};

struct Glyph {
    char32_t character;
    std::size_t columns;
};

constexpr char32_t Replacement = 0xFFFD;
constexpr std::string_view Ellipsis = "\xE2\x80\xA6";

Glyph glyphOf(char32_t character) {
    // Without a Unicode locale nothing but ASCII is known to have a width.
    const int columns = ::wcwidth(static_cast<wchar_t>(character));
    if (columns < 0 || isUnsafe(character) || character == Replacement) {
        return {Replacement, 1};
    }
    return {character, static_cast<std::size_t>(columns)};
}

std::vector<Glyph> glyphsOf(std::string_view text) {
    const UnicodeScope unicode;
    std::vector<Glyph> glyphs;
    const std::u16string units = fl::i18n::to_ustring(text);
    for (std::size_t i = 0; i < units.size(); ++i) {
        char32_t character = units[i];
        // The conversion leaves no half pairs.
        if ((character & 0xFC00U) == 0xD800U && i + 1 < units.size()) {
            character = 0x10000U + ((character & 0x3FFU) << 10U) + (units[++i] & 0x3FFU);
        }
        glyphs.push_back(glyphOf(character));
    }
    return glyphs;
}

std::string textOf(const std::vector<Glyph>& glyphs, std::size_t begin, std::size_t end) {
    std::u16string units;
    for (std::size_t i = begin; i < end; ++i) {
        const char32_t character = glyphs[i].character;
        if (character < 0x10000U) {
            units += static_cast<char16_t>(character);
        } else {
            units += static_cast<char16_t>(0xD800U + ((character - 0x10000U) >> 10U));
            units += static_cast<char16_t>(0xDC00U + (character & 0x3FFU));
        }
    }
    return fl::i18n::to_string(units);
}

std::size_t columnsOf(const std::vector<Glyph>& glyphs) {
    std::size_t columns = 0;
    for (const Glyph& glyph : glyphs) {
        columns += glyph.columns;
    }
    return columns;
}

/// How many of the glyphs fit, from the front.
std::size_t leading(const std::vector<Glyph>& glyphs, std::size_t columns) {
    std::size_t count = 0;
    std::size_t used = 0;
    while (count < glyphs.size() && used + glyphs[count].columns <= columns) {
        used += glyphs[count++].columns;
    }
    return count;
}

/// Where the glyphs begin that fit, from the back. A combining character goes with the one before it.
std::size_t trailing(const std::vector<Glyph>& glyphs, std::size_t columns) {
    std::size_t begin = glyphs.size();
    std::size_t used = 0;
    while (begin > 0 && used + glyphs[begin - 1].columns <= columns) {
        used += glyphs[--begin].columns;
    }
    while (begin < glyphs.size() && glyphs[begin].columns == 0) {
        ++begin;
    }
    return begin;
}

}  // namespace

std::string harmless(std::string_view text) {
    const std::vector<Glyph> glyphs = glyphsOf(text);
    return textOf(glyphs, 0, glyphs.size());
}

std::size_t displayWidth(std::string_view text) { return columnsOf(glyphsOf(text)); }

std::string shortened(std::string_view text, std::size_t columns) {
    const std::vector<Glyph> glyphs = glyphsOf(text);
    if (columnsOf(glyphs) <= columns) {
        return textOf(glyphs, 0, glyphs.size());
    }
    if (columns == 0) {
        return {};
    }
    const std::size_t back = (columns - 1) / 2;
    const std::size_t front = columns - 1 - back;
    return textOf(glyphs, 0, leading(glyphs, front)) + std::string(Ellipsis) +
           textOf(glyphs, trailing(glyphs, back), glyphs.size());
}

}  // namespace jstore
