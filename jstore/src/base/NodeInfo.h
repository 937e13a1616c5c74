#pragma once

#include <string>

#include "foundation/storage/provider/IProvider.h"

namespace jstore {

/// What jstore itself needs to know about a file or folder, from the back end's extended attributes. A back end without
/// these attributes has no links, no special files and no identities.
struct NodeInfo {
    /// The location itself is a symbolic link, whatever it leads to: `basic:isSymbolicLink`.
    bool link = false;
    /// It leads to something that is neither a file nor a folder, such as a pipe or a device: `basic:isOther`.
    bool special = false;
    /// Identifies what it leads to, under whatever name: `basic:fileKey`. Empty if unknown.
    std::string identity;
};

/// Asks the back end once. A failure gives an empty answer: the operation that comes next meets the same trouble and
/// reports it. Blocks in Java.
[[nodiscard]] NodeInfo nodeInfoOf(const foundation::storage::provider::IProvider& provider,
                                  const foundation::storage::provider::StorageIRI& location);

/// Whether the location is the folder or lies in it. Compares the spelling and the identities of the folders above. A
/// link above that leads to a place deeper in the folder is not detected.
[[nodiscard]] bool isInside(const foundation::storage::provider::IProvider& provider,
                            const foundation::storage::provider::StorageIRI& location,
                            const foundation::storage::provider::StorageIRI& folder);

}  // namespace jstore
