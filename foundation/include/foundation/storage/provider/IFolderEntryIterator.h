#pragma once

#include <memory>
#include <string>

#include "foundation/Export.h"
#include "foundation/storage/provider/FolderEntry.h"

namespace foundation::storage::provider {

/// Iterates over a listing: `while (it->hasMore()) { it->advance(); use(it->getCurrent()); }`
///
/// One thread at a time may use it. The entries come in the order of the back end. A plain listing is complete before
/// the iterator is returned: it never blocks, and changes in the folder do not affect it.
///
/// **Recursive listings** list each folder when its turn comes, so hasMore() and advance() block. They and their clones
/// use the provider and must be destroyed before it. Only the listings along one path are in memory, never the tree.
///  - An entry's name is its path below the listed folder, and a folder comes before its contents.
///  - `wildcards` match the last name of the path. A folder is entered whether it matches or not.
///  - A symbolic link to a folder is listed but not entered, unless it is the folder that was asked for: links may lead
///    back up, and two of them in one folder make more paths than can ever be listed. Each folder therefore costs one
///    call of getExtendedAttributes(); ExtendedAttributes names the attribute. If the back end does not report links,
///    they are entered, and only the depth limit ends the iteration.
///  - A folder that has disappeared when its turn comes is skipped. If a folder cannot be listed, or lies more than
///    2048 levels deep (InvalidLocation), advance() throws; call it again to continue after that folder.
///
/// The slot order is fixed: getCurrent, hasMore, advance, clone, destructor.
class FOUNDATION_API IFolderEntryIterator {
public:
    /// Returns the entry that the last advance() moved to. Must not be called before the first advance().
    [[nodiscard]] virtual FolderEntry getCurrent() const = 0;

    /// Whether advance() has another entry or an error to give. Does not throw.
    [[nodiscard]] virtual bool hasMore() const = 0;

    /// Moves to the next entry. If there is an error instead, stays at the present one and throws it. Must not be
    /// called when hasMore() is false.
    virtual void advance() = 0;

    /// Returns a new iterator at the same entry, independent of this one; the caller owns and deletes it.
    [[nodiscard]] virtual IFolderEntryIterator* clone() const = 0;

    virtual ~IFolderEntryIterator();

    IFolderEntryIterator& operator=(const IFolderEntryIterator&) = delete;

protected:
    IFolderEntryIterator() = default;
    IFolderEntryIterator(const IFolderEntryIterator&) = default;
};

/// Iterates over the same listings, but returns only names.
class FOUNDATION_API IFolderNameIterator {
public:
    [[nodiscard]] virtual std::u16string getCurrent() const = 0;
    [[nodiscard]] virtual bool hasMore() const = 0;
    virtual void advance() = 0;
    [[nodiscard]] virtual IFolderNameIterator* clone() const = 0;
    virtual ~IFolderNameIterator();

    IFolderNameIterator& operator=(const IFolderNameIterator&) = delete;

protected:
    IFolderNameIterator() = default;
    IFolderNameIterator(const IFolderNameIterator&) = default;
};

/// Listings as IProvider returns them; the caller owns them.
using FolderEntries = std::unique_ptr<IFolderEntryIterator>;
using FolderNames = std::unique_ptr<IFolderNameIterator>;

}  // namespace foundation::storage::provider
