#pragma once

#include <string_view>

#include "foundation/Export.h"

namespace foundation::storage::provider {

/// What went wrong with a location. The numbers cross library borders and never change.
enum class ErrorCode : int {
    Unknown = 0,
    NotFound = 1,
    AlreadyExists = 2,
    AccessDenied = 3,
    NotAFile = 4,
    NotAFolder = 5,
    FolderNotEmpty = 6,
    Cancelled = 7,
    NotSupported = 8,
    InvalidLocation = 9,
    StorageFull = 10,
    InUse = 11,
    Unavailable = 12,
};

/// The enumerator's name, for example "NotFound"; "Unknown" for a number outside the table.
[[nodiscard]] FOUNDATION_API std::string_view toString(ErrorCode code) noexcept;

}  // namespace foundation::storage::provider
