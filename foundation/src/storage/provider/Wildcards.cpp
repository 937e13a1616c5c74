#include "foundation/storage/provider/Wildcards.h"

#include <optional>
#include <utility>

namespace foundation::storage::provider {

namespace {

constexpr bool isHighSurrogate(char16_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool isLowSurrogate(char16_t unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// The first character of a text that is not empty, as its one or two units.
constexpr std::u16string_view firstOf(std::u16string_view text) noexcept {
    const bool pair = text.size() > 1 && isHighSurrogate(text[0]) && isLowSurrogate(text[1]);
    return text.substr(0, pair ? 2 : 1);
}

constexpr void dropFirst(std::u16string_view& text) noexcept { text.remove_prefix(firstOf(text).size()); }

bool fitsFirst(std::u16string_view pattern, std::u16string_view name) noexcept {
    return !pattern.empty() && (pattern.front() == u'?' || firstOf(pattern) == firstOf(name));
}

/// Where the last `*` stands: what follows it in the pattern, and the part of the name that it has not taken yet.
struct Star {
    std::u16string_view pattern;
    std::u16string_view name;
};

}  // namespace

Wildcards::Wildcards(std::u16string pattern) : m_pattern(std::move(pattern)) {}

bool Wildcards::matches(std::u16string_view name) const noexcept {
    std::u16string_view pattern = m_pattern;
    std::optional<Star> star;
    while (!name.empty()) {
        if (pattern.starts_with(u'*')) {
            pattern.remove_prefix(1);
            star = {pattern, name};
        } else if (fitsFirst(pattern, name)) {
            dropFirst(pattern);
            dropFirst(name);
        } else if (star) {
            // Only the last star takes more: it can take all that an earlier one could.
            dropFirst(star->name);
            pattern = star->pattern;
            name = star->name;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*') == std::u16string_view::npos;
}

}  // namespace foundation::storage::provider
