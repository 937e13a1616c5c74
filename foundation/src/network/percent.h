#pragma once

#include <boost/url/grammar/hexdig_chars.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace foundation::network::detail {

/// The value of a hexadecimal digit, or -1.
inline int hexDigit(char16_t unit) noexcept {
    return unit < 0x80 ? boost::urls::grammar::hexdig_value(static_cast<char>(unit)) : -1;
}

/// Whether a whole escape, `%` and two hexadecimal digits, begins at `at`, which lies inside the text.
inline bool startsEscape(std::u16string_view text, std::size_t at) noexcept {
    return text[at] == u'%' && text.size() - at > 2 && hexDigit(text[at + 1]) >= 0 && hexDigit(text[at + 2]) >= 0;
}

/// The byte that the escape at `at` stands for.
inline char escapedByte(std::u16string_view text, std::size_t at) noexcept {
    return static_cast<char>(hexDigit(text[at + 1]) * 16 + hexDigit(text[at + 2]));
}

inline void appendEscape(std::u16string& out, char byte) {
    static constexpr std::u16string_view Digits = u"0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    out.push_back(u'%');
    out.push_back(Digits[value >> 4]);
    out.push_back(Digits[value & 0x0F]);
}

}  // namespace foundation::network::detail
