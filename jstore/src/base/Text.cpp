#include "base/Text.h"

#include <fmt/format.h>

#include <algorithm>

#include "fl/i18n/text.h"

namespace jstore {

namespace {

bool isControl(char32_t c) noexcept { return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029; }

bool turnsDirection(char32_t c) noexcept {
    return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

bool isHexDigit(char16_t c) noexcept {
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

bool startsEscape(std::u16string_view text) noexcept {
    return text.size() >= 3 && text[0] == u'%' && isHexDigit(text[1]) && isHexDigit(text[2]);
}

/// Adds the bytes of a character as they stand in a URI.
void appendEncoded(std::u16string& out, char16_t unit) {
    for (const char byte : fl::i18n::to_string(std::u16string(1, unit))) {
        const std::string escape = fmt::format("%{:02X}", static_cast<unsigned char>(byte));
        out.append(escape.begin(), escape.end());
    }
}

/// Percent-encodes each unit for which `isEncoded` returns true. It is passed the text from that unit on.
template <class Condition>
std::string encoded(std::string_view text, const Condition& isEncoded) {
    const std::u16string units = fl::i18n::to_ustring(text);
    std::u16string line;
    for (std::size_t at = 0; at < units.size(); ++at) {
        if (isEncoded(std::u16string_view(units).substr(at))) {
            appendEncoded(line, units[at]);
        } else {
            line += units[at];
        }
    }
    return fl::i18n::to_string(line);
}

}  // namespace

bool isUtf8(std::string_view bytes) {
    // Whatever is not well-formed comes back as U+FFFD, so only well-formed text survives the round trip.
    return fl::i18n::to_string(fl::i18n::to_ustring(bytes)) == bytes;
}

// Unsafe characters are all in the basic plane, so a unit of UTF-16 is as good as a character here.
bool isUnsafe(char32_t character) noexcept { return isControl(character) || turnsDirection(character); }

std::string oneLine(std::string_view text) {
    std::u16string line;
    bool gap = false;
    for (const char16_t unit : fl::i18n::to_ustring(text)) {
        if (unit == u' ' || isControl(unit)) {
            gap = !line.empty();
            continue;
        }
        if (gap) {
            line += u' ';
        }
        gap = false;
        if (turnsDirection(unit)) {
            appendEncoded(line, unit);
        } else {
            line += unit;
        }
    }
    return fl::i18n::to_string(line);
}

std::string printable(std::string_view location) {
    return encoded(location, [](std::u16string_view rest) { return isUnsafe(rest.front()); });
}

std::string printableName(std::string_view name) {
    return encoded(name, [](std::u16string_view rest) { return isUnsafe(rest.front()) || startsEscape(rest); });
}

std::string printableJson(std::string_view json) {
    const auto isPlain = [](char c) { return c >= 0x20 && c < 0x7F; };
    if (std::all_of(json.begin(), json.end(), isPlain)) {
        return std::string(json);
    }
    std::u16string line;
    for (const char16_t unit : fl::i18n::to_ustring(json)) {
        if (isUnsafe(unit)) {
            const std::string escape = fmt::format("\\u{:04x}", static_cast<unsigned>(unit));
            line.append(escape.begin(), escape.end());
        } else {
            line += unit;
        }
    }
    return fl::i18n::to_string(line);
}

}  // namespace jstore
