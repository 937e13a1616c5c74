#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "foundation/storage/provider/StorageIRI.h"

namespace jstore {

/// A location that the user named.
class Location {
public:
    explicit Location(foundation::storage::provider::StorageIRI iri) : m_iri(std::move(iri)) {}

    [[nodiscard]] const foundation::storage::provider::StorageIRI& iri() const noexcept { return m_iri; }
    /// The location as UTF-8. An IRI keeps the user's spelling, except that the scheme is in lower case.
    [[nodiscard]] std::string text() const;

private:
    foundation::storage::provider::StorageIRI m_iri;
};

/// Turns one argument into a location.
///
/// `java://…` is taken as it is; characters that an IRI may not hold (blanks, a `%` that begins no escape) are encoded
/// on the way to the back end. Anything that does not begin with `scheme://` or `java:` is a local path, relative to
/// the working folder, and becomes `java:///…` with each name encoded; `..` in it is resolved through the file system,
/// symbolic links included. A name in it may be any bytes, or what a list shows for them (see RawName.h).
///
/// Throws CommandError with exit code 2 for an empty argument, another `scheme://`, `java:` without `//`, and an IRI
/// that is not UTF-8 or holds `#` or `?`; with NotFound if the part before a `..` is missing.
[[nodiscard]] Location toLocation(std::string_view argument);

/// Turns all arguments into locations before any operation begins: if one is wrong, nothing is done.
[[nodiscard]] std::vector<Location> toLocations(const std::vector<std::string>& arguments);

}  // namespace jstore
