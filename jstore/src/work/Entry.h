#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/Location.h"
#include "foundation/storage/provider/IProvider.h"

namespace jstore {

/// A file or folder that a listing gave.
struct Entry {
    Location location;
    std::u16string name;
    foundation::storage::provider::EntryType type;
    std::size_t depth = 0;  ///< 0 for the folder at which a walk begins
    bool last = true;       ///< whether its folder lists nothing after it

    [[nodiscard]] bool isFolder() const noexcept { return type == foundation::storage::provider::EntryType::Folder; }
    /// The name as one line of UTF-8, as printableName() gives it.
    [[nodiscard]] std::string nameText() const;
};

/// The basic attributes of a file or folder.
struct EntryAttributes {
    std::optional<std::uint64_t> size;  ///< bytes; empty for a folder, or when the back end does not know
    boost::posix_time::ptime lastModified;
    bool writable = false;
};

/// "file" or "folder".
[[nodiscard]] const char* wordFor(foundation::storage::provider::EntryType type) noexcept;

/// What the folder holds, in the order of the names. Throws as IProvider::listAll() does. Blocks in Java.
[[nodiscard]] std::vector<Entry> entriesOf(const foundation::storage::provider::IProvider& provider,
                                           const Entry& folder);

/// What is at the location, as an entry. Throws Exception with NotFound if nothing is there. Blocks in Java.
[[nodiscard]] Entry entryAt(const foundation::storage::provider::IProvider& provider, const Location& location);

/// Throws as IProvider::getFileAttributes() and getFolderAttributes() do. Blocks in Java.
[[nodiscard]] EntryAttributes attributesOf(const foundation::storage::provider::IProvider& provider,
                                           const Entry& entry);

}  // namespace jstore
