#include "Input.h"

#include <algorithm>

#include "fl/i18n/text.h"

namespace fuzz {

namespace {

constexpr char UnitMark = '\xFF';

bool isSurrogate(char32_t point) { return point >= 0xD800 && point <= 0xDFFF; }

void appendUtf8(std::string& out, char32_t point) {
    const auto push = [&out](char32_t value) { out.push_back(static_cast<char>(static_cast<unsigned char>(value))); };
    if (point < 0x80) {
        push(point);
    } else if (point < 0x800) {
        push(0xC0 | (point >> 6));
        push(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        push(0xE0 | (point >> 12));
        push(0x80 | ((point >> 6) & 0x3F));
        push(0x80 | (point & 0x3F));
    } else {
        push(0xF0 | (point >> 18));
        push(0x80 | ((point >> 12) & 0x3F));
        push(0x80 | ((point >> 6) & 0x3F));
        push(0x80 | (point & 0x3F));
    }
}

}  // namespace

std::vector<Bytes> linesOf(Bytes input, std::size_t most) {
    if (input.ends_with('\n')) {
        input.remove_suffix(1);
    }
    std::vector<Bytes> lines;
    while (lines.size() + 1 < most) {
        const auto end = input.find('\n');
        if (end == Bytes::npos) {
            break;
        }
        lines.push_back(input.substr(0, end));
        input.remove_prefix(end + 1);
    }
    lines.push_back(input);
    return lines;
}

std::u16string utf16Of(Bytes input) {
    std::u16string text;
    while (!input.empty()) {
        const auto mark = input.find(UnitMark);
        text += fl::i18n::to_ustring(input.substr(0, mark));
        input.remove_prefix(mark == Bytes::npos ? input.size() : mark);
        if (input.size() >= 3) {
            text.push_back(static_cast<char16_t>(static_cast<unsigned char>(input[1]) << 8U |
                                                 static_cast<unsigned char>(input[2])));
        }
        input.remove_prefix(input.size() < 3 ? input.size() : 3);
    }
    return text;
}

std::u32string codePointsOf(std::u16string_view text) {
    std::u32string points;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char32_t unit = text[at];
        const char32_t next = at + 1 < text.size() ? text[at + 1] : 0;
        if (unit >= 0xD800 && unit < 0xDC00 && next >= 0xDC00 && next < 0xE000) {
            points.push_back(0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++at;
        } else {
            points.push_back(unit);
        }
    }
    return points;
}

bool isWellFormed(std::u16string_view text) {
    const auto points = codePointsOf(text);
    return points.end() == std::find_if(points.begin(), points.end(), isSurrogate);
}

std::string utf8Of(std::u16string_view text) {
    std::string out;
    for (const char32_t point : codePointsOf(text)) {
        appendUtf8(out, isSurrogate(point) ? U'\xFFFD' : point);
    }
    return out;
}

}  // namespace fuzz
