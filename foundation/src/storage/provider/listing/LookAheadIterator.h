#pragma once

#include <exception>
#include <memory>
#include <optional>

#include "foundation/storage/provider/IFolderEntryIterator.h"
#include "storage/provider/listing/EntrySource.h"

namespace foundation::storage::provider::detail {

/// Walks a source that knows only by trying whether there is more.
///
/// Nothing is fetched before it is asked for: hasMore() and advance() fetch one entry ahead at most, so both may block.
/// An error met while looking ahead waits for its turn: hasMore() is true, advance() throws the error and stays at its
/// entry, and the walk continues after the error.
class LookAheadIterator final : public IFolderEntryIterator {
public:
    explicit LookAheadIterator(std::unique_ptr<EntrySource> source);
    LookAheadIterator(const LookAheadIterator& other);

    [[nodiscard]] FolderEntry getCurrent() const override { return *m_current; }
    [[nodiscard]] bool hasMore() const override;
    void advance() override;
    [[nodiscard]] IFolderEntryIterator* clone() const override;

private:
    /// What the next advance() does; at the end neither is set.
    struct Turn {
        std::optional<FolderEntry> entry;
        std::exception_ptr error;
    };

    const Turn& lookAhead() const;

    std::unique_ptr<EntrySource> m_source;
    mutable std::optional<Turn> m_ahead;  // hasMore() fetches it
    std::optional<FolderEntry> m_current;
};

}  // namespace foundation::storage::provider::detail
