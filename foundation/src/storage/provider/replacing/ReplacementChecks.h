#pragma once

#include <optional>

#include "foundation/storage/provider/IProvider.h"

namespace foundation::storage::provider::detail {

// What is refused before any byte is copied. The move that ends an operation is what decides.

/// What is at the destination. AlreadyExists if the policy keeps it.
std::optional<EntryType> requireReplaceable(const IProvider& provider, const StorageIRI& destination,
                                            ReplacementPolicy policy);

/// The attributes of a file that may be written. AccessDenied if it may not: a move may well replace such a file, so
/// that has to be refused by itself.
FileAttributes requireWritable(const IProvider& provider, const StorageIRI& location);

/// Whether a file is there. Refuses one like requireWritable(), and a folder.
[[nodiscard]] bool hasWritableFile(const IProvider& provider, const StorageIRI& location);

}  // namespace foundation::storage::provider::detail
