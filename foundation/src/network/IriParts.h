#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace foundation::network::detail {

/// Where the parts of an identifier lie in its text; views into it.
struct IriParts {
    std::u16string_view prefix;     ///< what stands before the path: the scheme with its colon, and `//authority`
    std::u16string_view authority;  ///< without the slashes
    std::u16string_view path;
    bool hasAuthority = false;  ///< `//` is there, though the authority may be empty
};

/// Splits any text; refuses none, and keeps characters that an identifier may not hold in their part. Boost.URL's
/// parser takes only valid ASCII, but locations are split as they were given.
inline IriParts splitIri(std::u16string_view text) noexcept {
    const auto endAt = [text](std::u16string_view stops, std::size_t from) {
        return std::min(text.find_first_of(stops, from), text.size());
    };
    std::size_t position = endAt(u":/?#", 0);
    const bool hasScheme = position > 0 && position < text.size() && text[position] == u':';
    position = hasScheme ? position + 1 : 0;

    IriParts parts;
    parts.hasAuthority = text.substr(position).starts_with(u"//");
    if (parts.hasAuthority) {
        const std::size_t start = position + 2;
        position = endAt(u"/?#", start);
        parts.authority = text.substr(start, position - start);
    }
    parts.prefix = text.substr(0, position);
    parts.path = text.substr(position, endAt(u"?#", position) - position);
    return parts;
}

}  // namespace foundation::network::detail
