#pragma once

#include <string>
#include <string_view>

#include "foundation/Export.h"

namespace foundation::storage::provider {

/// A pattern for names: `*` matches any number of characters, including none. `?` matches exactly one. Every other
/// character matches itself.
///
/// A character is a Unicode code point, so `?` matches a whole surrogate pair; a lone surrogate is a character of its
/// own. Letter case matters, and text is not Unicode-normalized. There are no character classes, `;` separates nothing,
/// and `*.*` requires a dot. `*` and `?` cannot be escaped; to match one of them in a name, use `?`. The empty pattern
/// matches only the empty name.
///
/// An immutable value; any number of threads may read one.
class FOUNDATION_API Wildcards {
public:
    explicit Wildcards(std::u16string pattern);

    /// Whether the pattern matches the whole name. The time is at worst proportional to the product of both lengths;
    /// nothing is allocated.
    [[nodiscard]] bool matches(std::u16string_view name) const noexcept;

private:
    std::u16string m_pattern;
};

}  // namespace foundation::storage::provider
