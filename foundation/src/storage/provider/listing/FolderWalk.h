#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/storage/provider/IFolderEntryIterator.h"
#include "foundation/storage/provider/IProvider.h"
#include "storage/provider/listing/EntrySource.h"

namespace foundation::storage::provider::detail {

/// Everything below a folder, each folder before what it holds, named by the path from there.
///
/// A folder is listed when its turn comes, and its listing is released after its last entry. So the walk holds the
/// listings along one path at a time.
///
/// A folder that the back end reports as a symbolic link is returned but not entered, so a link that leads back up is
/// no endless walk; only the folder where the walk begins may be a link. The walk asks for each folder when its turn
/// comes. If the back end does not report links, only MaxFolderDepth ends such a walk.
///
/// A folder that is gone by then, or is no longer a folder, is skipped. A folder whose listing is refused, fails or
/// breaks off, and one that lies deeper than MaxFolderDepth, is an error of next(). The walk leaves out the rest of
/// that folder and continues after it.
class FolderWalk final : public EntrySource {
public:
    /// Lists the folder itself at once and throws what that throws. The provider must outlive the walk.
    FolderWalk(const IProvider& provider, const StorageIRI& folder);
    FolderWalk(const FolderWalk& other);

    [[nodiscard]] std::optional<FolderEntry> next() override;
    [[nodiscard]] std::unique_ptr<EntrySource> clone() const override;

private:
    /// A folder that is being walked.
    struct Level {
        Level(StorageIRI location, std::u16string pathBelow, std::size_t depthBelow,
              std::unique_ptr<IFolderEntryIterator> listing);
        Level(const Level& other);
        Level(Level&&) noexcept = default;
        Level& operator=(Level&&) noexcept = default;

        StorageIRI folder;
        std::u16string path;  // from the folder where the walk began; empty for that one
        std::size_t depth;
        std::unique_ptr<IFolderEntryIterator> entries;
    };

    void leaveFinished();
    void enterFolder();
    void enter(const StorageIRI& folder, std::u16string path, std::size_t depth);
    [[nodiscard]] bool leadsAway(const StorageIRI& folder);
    [[nodiscard]] std::optional<FolderEntry> nextEntry();

    const IProvider* m_provider;
    std::vector<Level> m_levels;
    std::optional<std::u16string> m_nextFolder;  // the name of the last entry, if that was a folder
    bool m_asksForLinks = true;                  // false once the back end has no extended attributes
};

}  // namespace foundation::storage::provider::detail
