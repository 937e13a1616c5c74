#pragma once

namespace foundation::storage::provider {

/// What a provider may be able to do beyond the basic operations; see IProvider::hasFeature().
enum class ExtendedFeature : int {
    RecursiveFolderRemoval = 0,                 ///< removes a folder with its contents in one operation
    AtomicCopy = 1,                             ///< a copy appears at its destination whole or not at all
    TransactionalStreams = 2,                   ///< streams whose writes show only after a commit
    RecursiveChangeEvents = 3,                  ///< one start request covers the whole tree below a folder
    WritableFlag = 4,                           ///< setWritable() works
    CanonicalLocations = 5,                     ///< getCanonicalLocation() sees through aliases
    AllowsMovesAndDeletesWhenOpen = 6,          ///< files open for writing may be moved and removed
    AllowsMovesAndDeletesWhenOpenReadOnly = 7,  ///< files open for reading may be moved and removed
};

}  // namespace foundation::storage::provider
