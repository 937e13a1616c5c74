#pragma once

#include <string>
#include <string_view>

#include "foundation/Export.h"

namespace foundation::storage::provider {

/// A pattern for names: `*` stands for any number of characters, also none, `?` for exactly one, all else for itself.
///
/// A character is a Unicode code point, so `?` takes a surrogate pair whole; a lone surrogate is a character of its
/// own. Letter case counts, and nothing is composed or decomposed. No other character has a meaning: there are no
/// classes, `;` separates nothing, and `*.*` asks for a dot. Nothing escapes the two either: in a pattern a `*` or `?`
/// of a name is met by `?`. The empty pattern fits the empty name alone.
///
/// An immutable value; any number of threads may read one.
class FOUNDATION_API Wildcards {
public:
    explicit Wildcards(std::u16string pattern);

    /// Whether the whole name fits. The time grows with the name's length times the pattern's at worst; nothing is
    /// allocated.
    [[nodiscard]] bool matches(std::u16string_view name) const noexcept;

private:
    std::u16string m_pattern;
};

}  // namespace foundation::storage::provider
