#pragma once

#include <memory>
#include <optional>

#include "foundation/storage/provider/FolderEntry.h"

namespace foundation::storage::provider::detail {

/// Gives the entries of a listing one after the other, for a LookAheadIterator to walk.
class EntrySource {
public:
    virtual ~EntrySource() = default;

    /// The next entry; empty at the end. An error takes the place of an entry: the call after it goes on behind it.
    [[nodiscard]] virtual std::optional<FolderEntry> next() = 0;

    /// A source at the same place that moves on its own.
    [[nodiscard]] virtual std::unique_ptr<EntrySource> clone() const = 0;

    EntrySource(const EntrySource&) = delete;
    EntrySource& operator=(const EntrySource&) = delete;

protected:
    EntrySource() = default;
};

}  // namespace foundation::storage::provider::detail
