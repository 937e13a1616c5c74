#include "fl/i18n/text.h"

#include <algorithm>
#include <iterator>
#include <ostream>

#include "i18n/utf.h"

namespace fl::i18n {

namespace {

constexpr std::size_t AsciiEnd = 0x80;

/// The length of the part at the front that is plain ASCII.
template <class Char>
std::size_t asciiPrefix(std::basic_string_view<Char> text) noexcept {
    const auto isBeyond = [](Char unit) { return std::make_unsigned_t<Char>(unit) >= AsciiEnd; };
    return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isBeyond) - text.begin());
}

template <class To, class From>
std::basic_string<To> convert(std::basic_string_view<From> text) {
    std::basic_string<To> result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto plain = text.substr(0, asciiPrefix(text));
        const std::size_t written = result.size();
        result.resize(written + plain.size());
        std::transform(plain.begin(), plain.end(), result.data() + written,
                       [](From unit) { return static_cast<To>(unit); });
        text.remove_prefix(plain.size());

        const From* position = text.data();
        const From* const end = position + text.size();
        while (position != end && std::make_unsigned_t<From>(*position) >= AsciiEnd) {
            const auto point = detail::takeCodePoint(position, end).value_or(detail::Replacement);
            detail::Traits<To>::encode(point, std::back_inserter(result));
        }
        text.remove_prefix(static_cast<std::size_t>(position - text.data()));
    }
    return result;
}

}  // namespace

std::string to_string(std::u16string_view text) { return convert<char>(text); }

std::u16string to_ustring(std::string_view text) { return convert<char16_t>(text); }

std::ostream& operator<<(std::ostream& out, const std::u16string& text) { return out << to_string(text); }

}  // namespace fl::i18n
