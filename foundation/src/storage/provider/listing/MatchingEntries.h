#pragma once

#include <memory>
#include <optional>
#include <string>

#include "foundation/storage/provider/IFolderEntryIterator.h"
#include "foundation/storage/provider/Wildcards.h"
#include "storage/provider/listing/EntrySource.h"

namespace foundation::storage::provider::detail {

/// The entries of a listing whose names fit a pattern. An error of the listing is passed on.
class MatchingEntries final : public EntrySource {
public:
    /// What must match the pattern: all of an entry's name, or what follows its last slash.
    enum class Part { WholeName, LastName };

    MatchingEntries(std::unique_ptr<IFolderEntryIterator> entries, Wildcards wildcards, Part part);

    [[nodiscard]] std::optional<FolderEntry> next() override;
    [[nodiscard]] std::unique_ptr<EntrySource> clone() const override;

private:
    [[nodiscard]] bool fits(const std::u16string& name) const;

    std::unique_ptr<IFolderEntryIterator> m_entries;
    Wildcards m_wildcards;
    Part m_part;
};

}  // namespace foundation::storage::provider::detail
