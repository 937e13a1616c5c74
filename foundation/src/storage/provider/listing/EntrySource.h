#pragma once

#include <memory>
#include <optional>

#include "foundation/storage/provider/FolderEntry.h"

namespace foundation::storage::provider::detail {

/// The entries of a listing, one after the other, for a LookAheadIterator.
class EntrySource {
public:
    virtual ~EntrySource() = default;

    /// The next entry; empty at the end. An error takes the place of an entry: the next call continues after it.
    [[nodiscard]] virtual std::optional<FolderEntry> next() = 0;

    /// A source at the same place that moves independently.
    [[nodiscard]] virtual std::unique_ptr<EntrySource> clone() const = 0;

    EntrySource(const EntrySource&) = delete;
    EntrySource& operator=(const EntrySource&) = delete;

protected:
    EntrySource() = default;
};

}  // namespace foundation::storage::provider::detail
