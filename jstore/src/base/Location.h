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
    /// The location as UTF-8, as the user spelled it where that was an IRI.
    [[nodiscard]] std::string text() const;

private:
    foundation::storage::provider::StorageIRI m_iri;
};

/// Turns one argument into a location.
///
/// `java://…` is taken as it stands; what an IRI may not hold (blanks, a `%` that begins no escape) is encoded on its
/// way to the back end. Anything without a scheme is a local path, relative to the working folder, and becomes
/// `java:///…` with each name encoded; `..` in it is resolved through the file system, symbolic links and all. A name
/// in it may be any bytes, or what a list shows for them (see RawName.h). Throws CommandError, exit code 2: empty,
/// another scheme, an IRI that is not UTF-8 or holds `#` or `?`; with NotFound if what stands before a `..` is missing.
[[nodiscard]] Location toLocation(std::string_view argument);

/// All arguments, before any operation begins: one that is wrong means that nothing is done.
[[nodiscard]] std::vector<Location> toLocations(const std::vector<std::string>& arguments);

}  // namespace jstore
