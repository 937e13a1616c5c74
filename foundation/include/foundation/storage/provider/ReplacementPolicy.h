#pragma once

namespace foundation::storage::provider {

/// What a move or a copy does when something is at the destination already. (A move onto itself finds nothing to
/// replace or to keep; see IProvider::moveFile().)
enum class ReplacementPolicy : int {
    KeepExisting = 0,         ///< the operation fails with AlreadyExists
    ReplaceExisting = 1,      ///< what is there is replaced
    ReplaceExistingFile = 2,  ///< a file is replaced, a folder never
};

}  // namespace foundation::storage::provider
