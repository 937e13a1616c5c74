#pragma once

#include <string>

#include "foundation/Export.h"
#include "foundation/storage/provider/FolderEntry.h"

namespace foundation::storage::provider {

/// Walks the entries of a listing: `while (it->hasMore()) { it->advance(); use(it->getCurrent()); }`
///
/// Belongs to the one caller that holds it. A listing that is read bit by bit may block in hasMore() and advance(), and
/// has to be gone before its provider is; see IProvider. The slot order is fixed: getCurrent, hasMore, advance, clone,
/// destructor.
class FOUNDATION_API IFolderEntryIterator {
public:
    /// The entry that the last advance() went to. Must not be called before the first advance().
    [[nodiscard]] virtual FolderEntry getCurrent() const = 0;

    /// Whether there is another entry, or an error to be told. Throws nothing itself.
    [[nodiscard]] virtual bool hasMore() const = 0;

    /// Goes to the next entry, or throws what stands in its place and stays. Must not be called when hasMore() is
    /// false.
    virtual void advance() = 0;

    /// A new iterator at the same place that moves on its own; the caller owns it.
    [[nodiscard]] virtual IFolderEntryIterator* clone() const = 0;

    virtual ~IFolderEntryIterator();

    IFolderEntryIterator& operator=(const IFolderEntryIterator&) = delete;

protected:
    IFolderEntryIterator() = default;
    IFolderEntryIterator(const IFolderEntryIterator&) = default;
};

/// The same walk over names alone.
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

}  // namespace foundation::storage::provider
