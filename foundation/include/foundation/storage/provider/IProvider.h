#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "foundation/Export.h"
#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/ByteStreamOpenOptions.h"
#include "foundation/storage/provider/ChangeCallback.h"
#include "foundation/storage/provider/EntryType.h"
#include "foundation/storage/provider/Exception.h"
#include "foundation/storage/provider/ExtendedAttributes.h"
#include "foundation/storage/provider/ExtendedFeature.h"
#include "foundation/storage/provider/FileAttributes.h"
#include "foundation/storage/provider/FilenameSensitivity.h"
#include "foundation/storage/provider/FolderAttributes.h"
#include "foundation/storage/provider/IFolderEntryIterator.h"
#include "foundation/storage/provider/PathComparator.h"
#include "foundation/storage/provider/ProviderCacheUsage.h"
#include "foundation/storage/provider/ProviderStorageInfo.h"
#include "foundation/storage/provider/ReplacementPolicy.h"
#include "foundation/storage/provider/StorageIRI.h"
#include "foundation/storage/provider/TransactionalStream.h"

namespace foundation::storage::provider {

namespace detail {
struct PollerHolder;
}

/// A storage back end: files and folders named by locations.
///
/// Callers use the public operations. A back end overrides the protected `do…` operations, whose slot order never
/// changes. An operation that can be made of others has a default here; the other defaults throw NotSupported.
///
/// Unless an operation says otherwise:
///  - It may be called from any thread, and by several at once, but not while the provider is being destroyed.
///  - It blocks until the back end has answered; a back end in Java is called on the calling thread.
///  - It throws Exception with one of the codes listed at the operation and the location concerned. Any operation may
///    also throw InvalidLocation (not a location of this back end), AccessDenied, Unavailable or NotSupported. A
///    failure of the machinery in between is an IInternalException.
///  - After an error nothing has changed.
///
/// ReplacementPolicy.h describes what happens to a file that is replaced, IFolderEntryIterator.h how listings behave.
class FOUNDATION_API IProvider {
public:
    virtual ~IProvider();

    IProvider(const IProvider&) = delete;
    IProvider& operator=(const IProvider&) = delete;

    // ---- files and folders ----

    /// Creates an empty file. Throws AlreadyExists if a file or folder is there, NotFound if the parent folder is
    /// missing, NotAFolder if the parent is a file, StorageFull.
    void createFile(const StorageIRI& location) const { doCreateFile(location); }

    /// Creates one folder. Fails like createFile().
    void createFolder(const StorageIRI& location) const { doCreateFolder(location); }

    /// Creates a folder and its missing parents; does nothing if the folder exists. Throws NotAFolder if a file is in
    /// the way. After an error the folders created so far remain.
    void createFolderRecursive(const StorageIRI& location) const { doCreateFolderRecursive(location); }

    /// Whether a file is there; false for a folder and for nothing.
    [[nodiscard]] bool fileExists(const StorageIRI& location) const { return doFileExists(location); }

    /// Whether a folder is there; false for a file and for nothing.
    [[nodiscard]] bool folderExists(const StorageIRI& location) const { return doFolderExists(location); }

    /// Whether a file or a folder is there.
    [[nodiscard]] bool exists(const StorageIRI& location) const { return doExists(location); }

    /// What is there; empty for nothing.
    [[nodiscard]] std::optional<EntryType> existsExtended(const StorageIRI& location) const {
        return doExistsExtended(location);
    }

    /// Removes a file. Throws NotFound if nothing is there, NotAFile for a folder, InUse if the file is open and the
    /// back end cannot remove it then.
    void removeFile(const StorageIRI& location) const { doRemoveFile(location); }

    /// Removes an empty folder. Throws NotFound if nothing is there, NotAFolder for a file, FolderNotEmpty if it has
    /// children.
    void removeFolder(const StorageIRI& location) const { doRemoveFolder(location); }

    /// Removes a folder and everything in it. Throws NotFound if nothing is there, NotAFolder for a file, InUse. After
    /// an error part of the contents may be gone.
    void removeFolderRecursive(const StorageIRI& location) const { doRemoveFolderRecursive(location); }

    /// Moves or renames a file. Throws NotFound if the source or the destination's parent folder is missing, NotAFile
    /// if the source is a folder, NotAFolder if the destination's parent is a file, AlreadyExists if `policy` keeps
    /// what is at the destination, StorageFull, InUse. ReplacementPolicy.h covers a folder at the destination.
    ///
    /// Moving a file onto itself, however the location is spelled, does nothing under any policy. Two names of one file
    /// (hard links) are different locations.
    void moveFile(const StorageIRI& source, const StorageIRI& destination,
                  ReplacementPolicy policy = ReplacementPolicy::KeepExisting) const {
        doMoveFile(source, destination, policy);
    }

    /// Moves or renames a folder and everything in it. Fails like moveFile(), with NotAFolder if the source is a file
    /// and InvalidLocation if the destination lies inside the source. Moving a folder onto itself does nothing under
    /// any policy.
    void moveFolder(const StorageIRI& source, const StorageIRI& destination,
                    ReplacementPolicy policy = ReplacementPolicy::KeepExisting) const {
        doMoveFolder(source, destination, policy);
    }

    /// Copies a file's bytes and nothing else: the copy has its own modification time and attributes.
    ///
    /// Throws NotFound if the source or the destination's parent folder is missing, NotAFile if the source is a folder,
    /// NotAFolder if the destination's parent is a file, AlreadyExists if `policy` keeps what is at the destination or
    /// the file is copied onto itself with KeepExisting, AccessDenied if the destination may not be written, InUse if
    /// it is open elsewhere, StorageFull. With any other policy, copying a file onto itself does nothing. A folder at
    /// the destination is treated as in moveFile().
    ///
    /// An existing file is overwritten in place. If that fails halfway, it holds the beginning of the new content, and
    /// the old content is lost. A new file appears complete or not at all, unless the back end does not support
    /// moveFile(). ReplacementPolicy.h has the details.
    void copyFile(const StorageIRI& source, const StorageIRI& destination,
                  ReplacementPolicy policy = ReplacementPolicy::KeepExisting) const {
        doCopyFile(source, destination, policy);
    }

    /// Copies a file's bytes so that the destination holds either its old content or all of the new content at any
    /// time, even after an error. Fails like copyFile().
    ///
    /// The default writes a file with a temporary hidden name (`.name.….tmp`) in the destination's folder and moves it
    /// into place, which is as atomic as the back end's moveFile(). The temporary file is removed after an error, but
    /// remains if the process or the storage dies first.
    void copyFileAtomic(const StorageIRI& source, const StorageIRI& destination,
                        ReplacementPolicy policy = ReplacementPolicy::KeepExisting) const {
        doCopyFileAtomic(source, destination, policy);
    }

    // ---- metadata ----

    /// Returns size, modification time and writability of a file. Throws NotFound if nothing is there, NotAFile for a
    /// folder.
    [[nodiscard]] FileAttributes getFileAttributes(const StorageIRI& location) const {
        return doGetFileAttributes(location);
    }

    /// Returns modification time and writability of a folder. Throws NotFound if nothing is there, NotAFolder for a
    /// file.
    [[nodiscard]] FolderAttributes getFolderAttributes(const StorageIRI& location) const {
        return doGetFolderAttributes(location);
    }

    /// Returns further metadata by name; empty if there is none. Throws NotFound if nothing is there, NotSupported if
    /// the back end has no such metadata.
    [[nodiscard]] ExtendedAttributes getExtendedAttributes(const StorageIRI& location) const {
        return doGetExtendedAttributes(location);
    }

    /// Returns capacity and occupied space, in bytes, of the storage that holds the location. Throws NotFound if
    /// nothing is there, NotSupported if the back end does not report them.
    [[nodiscard]] ProviderStorageInfo getProviderStorageInfo(const StorageIRI& location) const {
        return doGetProviderStorageInfo(location);
    }

    /// Sets the modification time (UTC) of a file or folder; storages with a coarser clock keep an earlier time. Throws
    /// NotFound if nothing is there, NotSupported for a time that the storage cannot hold, InUse if a stream holds the
    /// file exclusively. Special values such as not_a_date_time are not checked: they set some arbitrary time.
    void setLastModified(const StorageIRI& location, const boost::posix_time::ptime& lastModified) const {
        doSetLastModified(location, lastModified);
    }

    /// Allows or forbids writing to a file. Throws NotSupported unless the back end has the feature WritableFlag.
    void setWritable(const StorageIRI& location, bool writable) const { doSetWritable(location, writable); }

    /// Truncates a file to `size` bytes, or extends it with zeros. Throws NotFound if nothing is there, NotAFile for a
    /// folder, AccessDenied if the file may not be written, StorageFull.
    ///
    /// The default does nothing if the file has that size already. Otherwise it replaces the file with a changed copy,
    /// as copyFileAtomic() does. This reads and writes every byte that remains and needs space for them. A stream that
    /// is open on the file stays with the old file: what it writes from then on is lost without an error, so close it
    /// first and open the file again afterwards.
    void truncateToSize(const StorageIRI& location, std::uint64_t size) const { doTruncateToSize(location, size); }

    // ---- streams ----

    /// Opens a file for reading and writing, at position 0. Throws NotFound if the file is missing and the options do
    /// not create it, or if its parent folder is missing, NotAFolder if the parent is a file, NotAFile for a folder,
    /// AccessDenied if the file may not be written, InUse if it cannot be shared.
    [[nodiscard]] std::unique_ptr<ByteStream> openByteStream(const StorageIRI& location,
                                                             const ByteStreamOpenOptions& options = {}) const {
        return doOpenByteStream(location, options);
    }

    /// Opens a file for reading, at position 0. Throws NotFound if nothing is there, NotAFile for a folder, InUse if
    /// the file is open exclusively.
    [[nodiscard]] std::unique_ptr<ByteStream> openReadOnlyByteStream(const StorageIRI& location) const {
        return doOpenReadOnlyByteStream(location);
    }

    /// Opens a stream for reading and writing whose writes replace the file's content only on commit. It starts at
    /// position 0 of the present content. A missing file starts empty and exists only after the commit.
    ///
    /// Throws NotAFile for a folder, NotFound if the parent folder is missing, AccessDenied if the file may not be
    /// written.
    ///
    /// The default copies the content to a temporary file, as copyFileAtomic() does, and moves that over the file on
    /// commit. It overwrites what others wrote to the file in the meantime, so of two transactions the last commit
    /// wins. Such a stream uses the provider and must be destroyed before it.
    [[nodiscard]] std::unique_ptr<TransactionalStream> openTransactionalStream(const StorageIRI& location) const {
        return doOpenTransactionalStream(location);
    }

    /// Opens the same kind of stream, but keeps the uncommitted bytes in a new file at `scratch`, which the back end
    /// must be able to move to `location`. The file belongs to the stream.
    ///
    /// Fails like openTransactionalStream(). Throws AlreadyExists if something is at `scratch`, NotFound if its parent
    /// folder is missing, InvalidLocation if it equals `location`, and InUse if someone else opens the new file before
    /// the stream does; the file then remains.
    [[nodiscard]] std::unique_ptr<TransactionalStream> openTransactionalStreamAtScratchLocation(
        const StorageIRI& location, const StorageIRI& scratch) const {
        return doOpenTransactionalStreamAtScratchLocation(location, scratch);
    }

    // ---- listings ----
    //
    // Each throws NotFound if nothing is there and NotAFolder for a file. `wildcards` is a pattern for the class
    // Wildcards. For order, recursive listings, symbolic links and later errors see IFolderEntryIterator.h.

    [[nodiscard]] FolderEntries listAll(const StorageIRI& folder) const { return doListAll(folder); }
    [[nodiscard]] FolderEntries listAll(const StorageIRI& folder, const std::u16string& wildcards) const {
        return doListAllWildcards(folder, wildcards);
    }
    [[nodiscard]] FolderEntries listFiles(const StorageIRI& folder) const { return doListFiles(folder); }
    [[nodiscard]] FolderEntries listFiles(const StorageIRI& folder, const std::u16string& wildcards) const {
        return doListFilesWildcards(folder, wildcards);
    }
    [[nodiscard]] FolderEntries listFolders(const StorageIRI& folder) const { return doListFolders(folder); }
    [[nodiscard]] FolderEntries listFolders(const StorageIRI& folder, const std::u16string& wildcards) const {
        return doListFoldersWildcards(folder, wildcards);
    }
    [[nodiscard]] FolderNames listAllNamesOnly(const StorageIRI& folder) const { return doListAllNamesOnly(folder); }
    [[nodiscard]] FolderNames listAllNamesOnly(const StorageIRI& folder, const std::u16string& wildcards) const {
        return doListAllNamesOnlyWildcards(folder, wildcards);
    }
    [[nodiscard]] FolderNames listFoldersNamesOnly(const StorageIRI& folder) const {
        return doListFoldersNamesOnly(folder);
    }
    [[nodiscard]] FolderNames listFoldersNamesOnly(const StorageIRI& folder, const std::u16string& wildcards) const {
        return doListFoldersNamesOnlyWildcards(folder, wildcards);
    }
    [[nodiscard]] FolderNames listFilesNamesOnly(const StorageIRI& folder) const {
        return doListFilesNamesOnly(folder);
    }
    [[nodiscard]] FolderNames listFilesNamesOnly(const StorageIRI& folder, const std::u16string& wildcards) const {
        return doListFilesNamesOnlyWildcards(folder, wildcards);
    }
    [[nodiscard]] FolderEntries listAllRecursive(const StorageIRI& folder) const { return doListAllRecursive(folder); }
    [[nodiscard]] FolderEntries listAllRecursive(const StorageIRI& folder, const std::u16string& wildcards) const {
        return doListAllRecursiveWildcards(folder, wildcards);
    }
    [[nodiscard]] FolderNames listAllRecursiveNamesOnly(const StorageIRI& folder) const {
        return doListAllRecursiveNamesOnly(folder);
    }
    [[nodiscard]] FolderNames listAllRecursiveNamesOnly(const StorageIRI& folder,
                                                        const std::u16string& wildcards) const {
        return doListAllRecursiveNamesOnlyWildcards(folder, wildcards);
    }

    // ---- change events ----

    /// Starts sending change events for a location to the callback. `context` is passed through to the provider;
    /// `onParent` is 1 for a request on behalf of a child, else 0. A provider may ignore both.
    ///
    /// A provider may use only the first callback, for all locations. So pass the same callback each time, and
    /// distinguish locations by the event's watched location. Throws NotFound if nothing is there, NotSupported if the
    /// back end sends no events.
    void startChangeNotification(const StorageIRI& location, const ChangeCallback& callback,
                                 const void* context = nullptr, std::int32_t onParent = 0) const {
        doStartChangeNotification(location, callback, context, onParent);
    }

    /// Starts sending change events for the folder that holds the location.
    void startChangeNotificationOnParent(const StorageIRI& location, const ChangeCallback& callback,
                                         const void* context = nullptr) const {
        doStartChangeNotificationOnParent(location, callback, context);
    }

    /// Asks the back end to send no more events for the location. Events already on their way may still arrive, and so
    /// may any that a back end sends in spite of the request.
    void stopChangeNotification(const StorageIRI& location) const { doStopChangeNotification(location); }

    /// Sends change events for a location by scanning it at intervals, for back ends that send no events themselves.
    /// `interval` runs from the end of one scan to the start of the next. Changes made after this call has returned are
    /// reported; ChangeCallback.h describes what a scan sees and how the callback is called.
    ///
    /// Throws NotFound if nothing is there, NotSupported if `interval` is not positive or the callback is empty,
    /// std::system_error if no thread can be created, and any error of the first scan, which this call makes.
    ///
    /// Calling it again for a location, however it is spelled, replaces its callback and interval, and misses no change
    /// in between. When this returns, the replaced callback no longer runs, unless it made this call itself.
    ///
    /// Stop all locations before destroying the provider, because a scan uses it. The destructor ends what still runs,
    /// but by then a scan may have called a half-destroyed provider. A callback may itself destroy the provider.
    void startChangePollingMechanism(const StorageIRI& location, const ChangeCallback& callback,
                                     std::chrono::milliseconds interval) const {
        doStartChangePollingMechanism(location, callback, interval);
    }

    /// Stops scanning a location; does nothing if it is not polled. When this returns, no scan of it and no callback
    /// for it runs any more, and the copy of the callback is destroyed. A callback may call it; the call does not wait
    /// for that callback, which is then the last one. Do not hold a lock that the callback takes.
    void stopChangePollingMechanism(const StorageIRI& location) const { doStopChangePollingMechanism(location); }

    // ---- the provider itself ----

    /// Whether the provider itself has a feature beyond the basic operations. ExtendedFeature lists the features, and
    /// the operations that work even without them.
    [[nodiscard]] bool hasFeature(ExtendedFeature feature) const { return doHasFeature(feature); }

    /// Returns how the back end orders locations. By default the normalized texts are compared code unit by code unit,
    /// so letter case matters.
    [[nodiscard]] PathComparator getPathComparator() const { return doGetPathComparator(); }

    /// Returns the one spelling that all aliases of a location share. By default this is the normalized location: links
    /// are not resolved, nothing needs to exist, and the back end is not asked.
    [[nodiscard]] StorageIRI getCanonicalLocation(const StorageIRI& location) const {
        return doGetCanonicalLocation(location);
    }

    /// Whether letter case matters in names below the location. Throws NotSupported if the back end does not say.
    [[nodiscard]] FilenameSensitivity getFilenameSensitivity(const StorageIRI& location) const {
        return doGetFilenameSensitivity(location);
    }

    /// Returns how full the provider's cache is. Throws NotSupported if it has none.
    [[nodiscard]] ProviderCacheUsage getProviderCacheUsage() const { return doGetProviderCacheUsage(); }

    /// Informs the provider that the host is about to exit. Does nothing by default.
    void shutdown() { doShutdown(); }

protected:
    IProvider() = default;

    // The slot order: the destructor is 0, and each operation below takes the next number. Append, never insert.
    virtual void doCreateFile(const StorageIRI& location) const = 0;
    virtual void doCreateFolder(const StorageIRI& location) const = 0;
    virtual void doCreateFolderRecursive(const StorageIRI& location) const;
    virtual bool doFileExists(const StorageIRI& location) const = 0;
    virtual bool doFolderExists(const StorageIRI& location) const = 0;
    virtual void doRemoveFile(const StorageIRI& location) const = 0;
    virtual void doMoveFile(const StorageIRI& source, const StorageIRI& destination,
                            const ReplacementPolicy& policy) const = 0;
    virtual void doRemoveFolder(const StorageIRI& location) const = 0;
    virtual void doRemoveFolderRecursive(const StorageIRI& location) const = 0;
    virtual void doMoveFolder(const StorageIRI& source, const StorageIRI& destination,
                              const ReplacementPolicy& policy) const = 0;
    virtual FileAttributes doGetFileAttributes(const StorageIRI& location) const = 0;
    virtual FolderAttributes doGetFolderAttributes(const StorageIRI& location) const = 0;
    virtual std::unique_ptr<ByteStream> doOpenByteStream(const StorageIRI& location,
                                                         const ByteStreamOpenOptions& options) const = 0;
    virtual std::unique_ptr<ByteStream> doOpenReadOnlyByteStream(const StorageIRI& location) const = 0;
    virtual std::unique_ptr<TransactionalStream> doOpenTransactionalStream(const StorageIRI& location) const;
    virtual std::unique_ptr<TransactionalStream> doOpenTransactionalStreamAtScratchLocation(
        const StorageIRI& location, const StorageIRI& scratch) const;
    virtual FolderEntries doListAll(const StorageIRI& folder) const = 0;
    virtual FolderEntries doListAllWildcards(const StorageIRI& folder, const std::u16string& wildcards) const;
    virtual FolderEntries doListFiles(const StorageIRI& folder) const = 0;
    virtual FolderEntries doListFilesWildcards(const StorageIRI& folder, const std::u16string& wildcards) const;
    virtual FolderEntries doListFolders(const StorageIRI& folder) const = 0;
    virtual FolderEntries doListFoldersWildcards(const StorageIRI& folder, const std::u16string& wildcards) const;
    virtual FolderNames doListAllNamesOnly(const StorageIRI& folder) const;
    virtual FolderNames doListAllNamesOnlyWildcards(const StorageIRI& folder, const std::u16string& wildcards) const;
    virtual FolderNames doListFoldersNamesOnly(const StorageIRI& folder) const;
    virtual FolderNames doListFoldersNamesOnlyWildcards(const StorageIRI& folder,
                                                        const std::u16string& wildcards) const;
    virtual FolderNames doListFilesNamesOnly(const StorageIRI& folder) const;
    virtual FolderNames doListFilesNamesOnlyWildcards(const StorageIRI& folder, const std::u16string& wildcards) const;
    virtual FolderEntries doListAllRecursive(const StorageIRI& folder) const;
    virtual FolderEntries doListAllRecursiveWildcards(const StorageIRI& folder, const std::u16string& wildcards) const;
    virtual FolderNames doListAllRecursiveNamesOnly(const StorageIRI& folder) const;
    virtual FolderNames doListAllRecursiveNamesOnlyWildcards(const StorageIRI& folder,
                                                             const std::u16string& wildcards) const;
    virtual void doCopyFile(const StorageIRI& source, const StorageIRI& destination,
                            const ReplacementPolicy& policy) const;
    virtual void doCopyFileAtomic(const StorageIRI& source, const StorageIRI& destination,
                                  const ReplacementPolicy& policy) const;
    virtual void doSetLastModified(const StorageIRI& location, const boost::posix_time::ptime& lastModified) const = 0;
    virtual void doSetWritable(const StorageIRI& location, bool writable) const;
    virtual void doStartChangeNotification(const StorageIRI& location, const ChangeCallback& callback,
                                           const void* context, std::int32_t onParent) const = 0;
    virtual void doStartChangeNotificationOnParent(const StorageIRI& location, const ChangeCallback& callback,
                                                   const void* context) const = 0;
    virtual void doStopChangeNotification(const StorageIRI& location) const = 0;
    virtual void doStartChangePollingMechanism(const StorageIRI& location, const ChangeCallback& callback,
                                               std::chrono::milliseconds interval) const;
    virtual void doStopChangePollingMechanism(const StorageIRI& location) const;
    virtual bool doHasFeature(const ExtendedFeature& feature) const = 0;
    virtual PathComparator doGetPathComparator() const;
    virtual StorageIRI doGetCanonicalLocation(const StorageIRI& location) const;
    virtual FilenameSensitivity doGetFilenameSensitivity(const StorageIRI& location) const;
    virtual void doShutdown();
    virtual bool doExists(const StorageIRI& location) const;
    virtual std::optional<EntryType> doExistsExtended(const StorageIRI& location) const;
    virtual ExtendedAttributes doGetExtendedAttributes(const StorageIRI& location) const = 0;
    virtual ProviderStorageInfo doGetProviderStorageInfo(const StorageIRI& location) const = 0;
    virtual void doTruncateToSize(const StorageIRI& location, std::uint64_t size) const;
    virtual ProviderCacheUsage doGetProviderCacheUsage() const;

private:
    /// Polls for changes; null until polling is first started.
    mutable std::atomic<detail::PollerHolder*> m_poller{nullptr};
};

}  // namespace foundation::storage::provider
