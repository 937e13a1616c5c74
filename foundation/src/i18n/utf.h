#pragma once

#include <boost/locale/utf.hpp>

#include <cstddef>
#include <optional>

namespace fl::i18n::detail {

/// Stands in for whatever is not well-formed.
inline constexpr boost::locale::utf::code_point Replacement = 0xFFFD;

template <class Char>
using Traits = boost::locale::utf::utf_traits<Char>;

/// How many units at `start` form one error: a lone surrogate.
constexpr std::ptrdiff_t illFormedLength(const char16_t*, const char16_t*) noexcept { return 1; }

/// Whether a well-formed UTF-8 sequence may begin with these two bytes. False if the second byte already shows that the
/// sequence is overlong, a surrogate, or above U+10FFFF.
inline bool mayFollow(unsigned char lead, unsigned char second) noexcept {
    if (!Traits<char>::is_trail(static_cast<char>(second))) {
        return false;
    }
    switch (lead) {
        case 0xE0:
            return second >= 0xA0;
        case 0xED:
            return second <= 0x9F;
        case 0xF0:
            return second >= 0x90;
        case 0xF4:
            return second <= 0x8F;
        default:
            return true;
    }
}

/// How many bytes at `start` form one error: the longest part that could have begun a well-formed sequence, else one.
inline std::ptrdiff_t illFormedLength(const char* start, const char* end) noexcept {
    const std::ptrdiff_t trail = Traits<char>::trail_length(*start);
    if (trail < 1 || end - start < 2 ||
        !mayFollow(static_cast<unsigned char>(start[0]), static_cast<unsigned char>(start[1]))) {
        return 1;
    }
    std::ptrdiff_t length = 2;
    while (length <= trail && start + length != end && Traits<char>::is_trail(start[length])) {
        ++length;
    }
    return length;
}

/// Removes one code point from the front of a range that is not empty, or one ill-formed part; then returns nothing.
template <class Char>
std::optional<boost::locale::utf::code_point> takeCodePoint(const Char*& position, const Char* end) noexcept {
    const Char* const start = position;
    const auto point = Traits<Char>::decode(position, end);
    if (boost::locale::utf::is_valid_codepoint(point)) {
        return point;
    }
    // The decoder has also consumed the unit that broke the sequence, which may well begin the next one.
    position = start + illFormedLength(start, end);
    return std::nullopt;
}

}  // namespace fl::i18n::detail
