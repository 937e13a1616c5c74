#pragma once

#include <compare>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>

#include "foundation/Export.h"
#include "foundation/network/IRI.h"

namespace foundation::storage::provider {

/// The location of a file or folder, for example `java://mount/folder/name`: scheme, authority and path as UTF-16 text.
///
/// The text is kept as given; nothing is checked until a part is asked for, so a location made from any text can
/// travel in an error. An immutable value; any number of threads may read one.
class FOUNDATION_API StorageIRI {
public:
    StorageIRI() = default;
    explicit StorageIRI(std::u16string text) noexcept : m_text(std::move(text)) {}

    [[nodiscard]] const std::u16string& text() const noexcept { return m_text; }
    [[nodiscard]] bool empty() const noexcept { return m_text.empty(); }

    [[nodiscard]] network::IRI toIRI() const { return network::IRI(m_text); }

    /// The location that holds this one, without query and fragment. Empty segments and a trailing slash do not count
    /// as levels, and dot segments are followed. The parent of a root (`java://`, `java:///`, `java://mount`,
    /// `java://mount/`) and of the empty location is the same location.
    [[nodiscard]] StorageIRI getParent() const;

    /// Whether getParent() leads nowhere.
    [[nodiscard]] bool isRoot() const;

    /// The last segment of the path, decoded; empty for a root. An escape that is not UTF-8 decodes to U+FFFD.
    [[nodiscard]] std::u16string getName() const;

    /// The child of that name, without query and fragment. `name` is a plain name: what has a meaning in a location
    /// (`/ ? # %` and the like) is encoded, so that getName() of the result gives the name back.
    /// Throws Exception with InvalidLocation for the empty name, `.` and `..`: no location can hold a child so named,
    /// since an encoded dot means the same as a plain one.
    [[nodiscard]] StorageIRI getChild(std::u16string_view name) const;

    /// The same location in its normal form: the scheme in lower case, the mount as it is, escapes in upper case and
    /// only where they are needed, empty and dot segments resolved, a trailing slash for a root alone, `//` before a
    /// path from the top (`java:/a` is `java:///a`). Two texts of one location have one normal form. Text that is no
    /// IRI, or only a relative one, is returned as it is.
    [[nodiscard]] StorageIRI normalized() const;

    /// Compares the text as it is; compare normalized() locations to see through different spellings.
    [[nodiscard]] bool operator==(const StorageIRI&) const = default;
    [[nodiscard]] std::strong_ordering operator<=>(const StorageIRI&) const = default;

private:
    std::u16string m_text;
};

/// Writes the location's text as UTF-8.
FOUNDATION_API std::ostream& operator<<(std::ostream& out, const StorageIRI& location);

}  // namespace foundation::storage::provider

template <>
struct std::hash<foundation::storage::provider::StorageIRI> {
    std::size_t operator()(const foundation::storage::provider::StorageIRI& location) const noexcept {
        return std::hash<std::u16string>{}(location.text());
    }
};
