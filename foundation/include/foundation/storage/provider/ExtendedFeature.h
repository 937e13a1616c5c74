#pragma once

namespace foundation::storage::provider {

/// What a provider may be able to do itself, beyond the basic operations; see IProvider::hasFeature().
///
/// These operations work even where the answer is false, because IProvider has defaults for them:
///  - without AtomicCopy: copyFileAtomic(), which is then as atomic as the back end's moveFile();
///  - without TransactionalStreams: openTransactionalStream(), openTransactionalStreamAtScratchLocation() and
///    truncateToSize(), which use a temporary file and moveFile();
///  - without CanonicalLocations: getCanonicalLocation(), which only normalizes the text.
/// Without WritableFlag, setWritable() throws NotSupported. Without RecursiveFolderRemoval, removeFolderRecursive() may
/// throw it too.
///
/// The provider of a back end in Java answers false for AtomicCopy, TransactionalStreams, WritableFlag and
/// CanonicalLocations without asking Java, and asks Java about the other four.
enum class ExtendedFeature : int {
    RecursiveFolderRemoval = 0,                 ///< removes a folder with its contents in one operation
    AtomicCopy = 1,                             ///< a copy appears at its destination complete or not at all
    TransactionalStreams = 2,                   ///< streams whose writes become visible only with a commit
    RecursiveChangeEvents = 3,                  ///< one start request covers the whole tree below a folder
    WritableFlag = 4,                           ///< setWritable() works
    CanonicalLocations = 5,                     ///< getCanonicalLocation() resolves aliases
    AllowsMovesAndDeletesWhenOpen = 6,          ///< files open for writing may be moved and removed
    AllowsMovesAndDeletesWhenOpenReadOnly = 7,  ///< files open only for reading may be moved and removed
};

}  // namespace foundation::storage::provider
