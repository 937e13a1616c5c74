#pragma once

#include <optional>

#include "foundation/storage/provider/IProvider.h"

namespace foundation::storage::provider::detail {

// Checks that refuse an operation before any byte is copied. The move at its end has the last word.

/// What is at the destination. AlreadyExists if the policy keeps it.
std::optional<EntryType> requireReplaceable(const IProvider& provider, const StorageIRI& destination,
                                            ReplacementPolicy policy);

/// The attributes of a file that may be written. AccessDenied if it may not be: the move might replace such a file
/// without an error.
FileAttributes requireWritable(const IProvider& provider, const StorageIRI& location);

/// Whether a file is there. Refuses one like requireWritable(), and a folder.
[[nodiscard]] bool hasWritableFile(const IProvider& provider, const StorageIRI& location);

}  // namespace foundation::storage::provider::detail
