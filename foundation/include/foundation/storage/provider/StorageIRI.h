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
/// The text is kept as given and checked only when a part of it is asked for, so any text can be reported in an error.
/// An immutable value; any number of threads may read one.
class FOUNDATION_API StorageIRI {
public:
    StorageIRI() = default;
    explicit StorageIRI(std::u16string text) noexcept : m_text(std::move(text)) {}

    [[nodiscard]] const std::u16string& text() const noexcept { return m_text; }
    [[nodiscard]] bool empty() const noexcept { return m_text.empty(); }

    [[nodiscard]] network::IRI toIRI() const { return network::IRI(m_text); }

    /// Returns the parent location, without query and fragment. Empty segments and a trailing slash do not count as
    /// levels, and dot segments are resolved. A root (`java://`, `java:///`, `java://mount`, `java://mount/`) and the
    /// empty location are their own parents.
    [[nodiscard]] StorageIRI getParent() const;

    /// Whether the location is its own parent.
    [[nodiscard]] bool isRoot() const;

    /// Returns the last segment of the path, decoded; empty for a root. An escape that is not UTF-8 becomes U+FFFD.
    [[nodiscard]] std::u16string getName() const;

    /// Returns the location of a child, without query and fragment. `name` is a plain name: characters with a meaning
    /// in a location (`/ ? # %` and others) are encoded, so getName() of the result returns the name again.
    ///
    /// Throws Exception with InvalidLocation for the empty name, `.` and `..`, which no location can express: an
    /// encoded dot means the same as a plain one.
    [[nodiscard]] StorageIRI getChild(std::u16string_view name) const;

    /// Returns the same location in its normal form: the scheme in lower case, the mount unchanged, escapes in upper
    /// case and only where needed, empty and dot segments resolved, a trailing slash only for a root, `//` before an
    /// absolute path (`java:/a` becomes `java:///a`). All texts of one location have the same normal form. A relative
    /// IRI, or text that is not an IRI, is returned unchanged.
    [[nodiscard]] StorageIRI normalized() const;

    /// Compares the texts. To treat different spellings as equal, compare normalized() locations.
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
