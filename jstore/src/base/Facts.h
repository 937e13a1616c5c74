#pragma once

#include <string>

#include "foundation/storage/provider/IProvider.h"

namespace jstore {

/// What a back end says of a file or folder in its extended attributes, as far as jstore's own decisions need it. A
/// back end that says nothing of the kind knows no links, nothing special and no identities.
struct Facts {
    /// The location is itself a symbolic link, whatever it leads to: `basic:isSymbolicLink`.
    bool link = false;
    /// It leads to something that is neither a file nor a folder, such as a pipe or a device: `basic:isOther`.
    bool special = false;
    /// Identifies what it leads to, under whatever name: `basic:fileKey`. Empty if that is not known.
    std::string identity;
};

/// Asks the back end, once. What fails is left out: whatever is wrong, the operation that comes next meets it too and
/// reports it. Blocks in Java.
[[nodiscard]] Facts factsOf(const foundation::storage::provider::IProvider& provider,
                            const foundation::storage::provider::StorageIRI& location);

/// Whether two locations lead to the same file or folder: the same spelling, or the same known identity.
[[nodiscard]] bool isSame(const foundation::storage::provider::IProvider& provider,
                          const foundation::storage::provider::StorageIRI& one,
                          const foundation::storage::provider::StorageIRI& other);

/// Whether the location is the folder or lies in it, by the identities of the folders above as well as by spelling. A
/// link above that leads to a place deep in the folder is not seen through.
[[nodiscard]] bool isInside(const foundation::storage::provider::IProvider& provider,
                            const foundation::storage::provider::StorageIRI& location,
                            const foundation::storage::provider::StorageIRI& folder);

}  // namespace jstore
