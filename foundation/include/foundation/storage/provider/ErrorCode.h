#pragma once

#include <string_view>

#include "foundation/Export.h"

namespace foundation::storage::provider {

/// Why an operation failed at a location. Other libraries rely on the numbers, which never change.
enum class ErrorCode : int {
    Unknown = 0,          ///< the back end cannot say more
    NotFound = 1,         ///< nothing is there, or the parent folder is missing
    AlreadyExists = 2,    ///< something is there, and it is to be kept
    AccessDenied = 3,     ///< the back end refuses, for example for lack of permission
    NotAFile = 4,         ///< a file is needed, and a folder is there
    NotAFolder = 5,       ///< a folder is needed, and a file is there
    FolderNotEmpty = 6,   ///< the folder has children
    Cancelled = 7,        ///< the operation was cancelled; a back end in Java never reports this
    NotSupported = 8,     ///< the back end does not offer the operation, or not at this location
    InvalidLocation = 9,  ///< not a location of this back end, or the two locations do not fit together
    StorageFull = 10,     ///< no space is left, or a quota is used up
    InUse = 11,           ///< something else uses the file or folder
    Unavailable = 12,     ///< the storage cannot be reached, or the stream or back end is closed
};

/// The enumerator's name, for example "NotFound"; "Unknown" for a number outside the table.
[[nodiscard]] FOUNDATION_API std::string_view toString(ErrorCode code) noexcept;

}  // namespace foundation::storage::provider
