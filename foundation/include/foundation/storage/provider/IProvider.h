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
/// Callers use the public operations; a back end overrides the protected `do…` operations, whose slot order is fixed
/// and never changes. Operations that can be made of others have a default here; the rest of the defaults throw
/// Exception with NotSupported and the location.
///
/// Unless an operation says otherwise: it may be called from any thread, several at once; it blocks until the back end
/// has answered; it throws Exception with the code named by case, Unavailable when the back end cannot be reached, and
/// an IInternalException when the machinery between fails. After an error nothing has changed. No operation may run
/// while the provider is destroyed.
///
/// What replaces a file. copyFileAtomic(), truncateToSize() and the commit of a transaction write a new file and end in
/// moveFile() with a replacing policy, on the location that the caller named:
///  - Permissions and attributes attached by users are those of the replaced file, and a symbolic link goes on leading
///    to the file that is replaced, as far as the back end's moveFile() sees to it; NioProvider's does.
///  - It is another file. Other names of the replaced file (hard links) keep the old content from then on. A stream
///    that was opened before stays with the old file too, and what it writes afterwards is lost with that file.
///    copyFile() and openByteStream() write to the file itself, with all its names.
///  - While it is written it stands under a hidden, temporary name in the folder of the location (of the link, if the
///    location is one), and may be read there by whoever may read a new file of this process.
///  - Readers find the old content or the whole new one, in every process, after an error and when the process dies, as
///    far as moveFile() is atomic. That is a promise about order, not about power: nothing in this interface forces
///    bytes to the disk, and after a power failure the old content may be back, or the file empty or incomplete, unless
///    the back end sees to it.
class FOUNDATION_API IProvider {
public:
    virtual ~IProvider();

    IProvider(const IProvider&) = delete;
    IProvider& operator=(const IProvider&) = delete;

    // ---- files and folders ----

    /// Creates an empty file. AlreadyExists if a file or folder is there, NotFound if its folder is missing,
    /// NotAFolder if a file stands in the folder's place, AccessDenied if the back end refuses.
    void createFile(const StorageIRI& location) const { doCreateFile(location); }

    /// Creates one folder. Fails like createFile().
    void createFolder(const StorageIRI& location) const { doCreateFolder(location); }

    /// Creates a folder and every missing folder above it; a folder that exists is no error. NotAFolder if a file
    /// stands in the way. After an error the folders created so far stay.
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

    /// Removes a file. NotFound if nothing is there, NotAFile for a folder.
    void removeFile(const StorageIRI& location) const { doRemoveFile(location); }

    /// Removes an empty folder. NotFound if nothing is there, NotAFolder for a file, FolderNotEmpty if it has children.
    void removeFolder(const StorageIRI& location) const { doRemoveFolder(location); }

    /// Removes a folder with all it holds. NotFound if nothing is there, NotAFolder for a file. After an error a part
    /// of the contents may be gone.
    void removeFolderRecursive(const StorageIRI& location) const { doRemoveFolderRecursive(location); }

    /// Moves or renames a file. NotFound if the source or the destination's folder is missing, NotAFile if the source
    /// is a folder, AlreadyExists if something else is at the destination that `policy` keeps.
    ///
    /// Moved onto itself, in whatever spelling of the location, it stays as it is, whatever the policy: nothing there
    /// has to be replaced or kept. Two names of one file (hard links) are not the same location.
    void moveFile(const StorageIRI& source, const StorageIRI& destination,
                  ReplacementPolicy policy = ReplacementPolicy::KeepExisting) const {
        doMoveFile(source, destination, policy);
    }

    /// Moves or renames a folder with all it holds. Fails like moveFile(), with NotAFolder if the source is a file;
    /// InvalidLocation if the destination lies inside the source. Moved onto itself it stays as it is, whatever the
    /// policy.
    void moveFolder(const StorageIRI& source, const StorageIRI& destination,
                    ReplacementPolicy policy = ReplacementPolicy::KeepExisting) const {
        doMoveFolder(source, destination, policy);
    }

    /// Copies a file's bytes, and nothing but the bytes: the copy has its own time of modification and attributes.
    ///
    /// NotFound if the source or the destination's folder is missing, NotAFile if the source is a folder, NotAFolder if
    /// a file stands in the place of the destination's folder, AlreadyExists if something is at the destination that
    /// `policy` keeps, AccessDenied if the destination may not be written, InUse if it is open elsewhere, StorageFull.
    /// A folder at the destination is replaced as moveFile() does it. A copy of a file onto itself changes nothing, and
    /// is AlreadyExists for KeepExisting: unlike a move, a copy has to make a second file.
    ///
    /// A file that is replaced is written in place: it keeps its identity, names, permissions and attributes, and a
    /// link to it is followed. After an error while bytes were on their way it holds the beginning of the new content
    /// and the old content is lost.
    ///
    /// A new file is written under a temporary, hidden name, as copyFileAtomic() does it, and moved into place when it
    /// is complete. So after an error nothing is at the destination, and what another has put there meanwhile is kept
    /// or replaced by `policy`, never removed. Only a back end whose moveFile() is NotSupported is written to in place
    /// at once; there a part may be left after an error.
    void copyFile(const StorageIRI& source, const StorageIRI& destination,
                  ReplacementPolicy policy = ReplacementPolicy::KeepExisting) const {
        doCopyFile(source, destination, policy);
    }

    /// Copies a file's bytes so that the destination holds its old content or the whole new one at any time, after an
    /// error too. Fails like copyFile().
    ///
    /// The default writes a new file with a temporary, hidden name (`.name.….tmp`) in the destination's folder and
    /// moves it into place: as atomic as the back end's moveFile(). For permissions, attributes, links, open streams
    /// and power failures see above ("What replaces a file"). The temporary file is removed after an error; when the
    /// process or the storage dies first it stays.
    void copyFileAtomic(const StorageIRI& source, const StorageIRI& destination,
                        ReplacementPolicy policy = ReplacementPolicy::KeepExisting) const {
        doCopyFileAtomic(source, destination, policy);
    }

    // ---- metadata ----

    /// NotFound if nothing is there, NotAFile for a folder.
    [[nodiscard]] FileAttributes getFileAttributes(const StorageIRI& location) const {
        return doGetFileAttributes(location);
    }

    /// NotFound if nothing is there, NotAFolder for a file.
    [[nodiscard]] FolderAttributes getFolderAttributes(const StorageIRI& location) const {
        return doGetFolderAttributes(location);
    }

    /// Named metadata beyond the basic attributes; empty where there is none. NotFound if nothing is there. The text
    /// "true" by the name `basic:isSymbolicLink` says that the location itself is a symbolic link.
    [[nodiscard]] ExtendedAttributes getExtendedAttributes(const StorageIRI& location) const {
        return doGetExtendedAttributes(location);
    }

    /// The storage that holds the location.
    [[nodiscard]] ProviderStorageInfo getProviderStorageInfo(const StorageIRI& location) const {
        return doGetProviderStorageInfo(location);
    }

    /// Sets the time of last modification (UTC) of a file or folder. NotFound if nothing is there.
    void setLastModified(const StorageIRI& location, const boost::posix_time::ptime& lastModified) const {
        doSetLastModified(location, lastModified);
    }

    /// Allows or forbids writing to a file. NotSupported unless the back end has the feature WritableFlag.
    void setWritable(const StorageIRI& location, bool writable) const { doSetWritable(location, writable); }

    /// Makes a file `size` bytes long: cuts it, or adds zeros. NotFound if nothing is there, NotAFile for a folder,
    /// AccessDenied for a file that may not be written, StorageFull. After an error the file is as it was.
    ///
    /// The default replaces the file by a changed copy, as copyFileAtomic() does, and leaves a file alone that has the
    /// size already. Mind what that means: it reads and writes all bytes that stay and needs room for them, whatever is
    /// cut off; and a stream that is open on the file is left with the old file, so that what it writes from then on is
    /// lost without an error. Close it first, and open the file again. (See "What replaces a file" above.)
    void truncateToSize(const StorageIRI& location, std::uint64_t size) const { doTruncateToSize(location, size); }

    // ---- streams ----

    /// Opens a file's bytes for reading and writing. NotFound if the file is missing and the options do not create it,
    /// NotAFile for a folder, AccessDenied for a file that may not be written, InUse if it cannot be shared.
    [[nodiscard]] std::unique_ptr<ByteStream> openByteStream(const StorageIRI& location,
                                                             const ByteStreamOpenOptions& options = {}) const {
        return doOpenByteStream(location, options);
    }

    /// Opens a file's bytes for reading. NotFound if nothing is there, NotAFile for a folder.
    [[nodiscard]] std::unique_ptr<ByteStream> openReadOnlyByteStream(const StorageIRI& location) const {
        return doOpenReadOnlyByteStream(location);
    }

    /// Opens a stream for reading and writing whose writes replace the file's content only on commit. It starts with
    /// the present content, at position 0; a missing file starts empty and is there after the commit.
    ///
    /// NotAFile for a folder, NotFound if the file's folder is missing, AccessDenied for a file that may not be
    /// written.
    ///
    /// The default copies the content to a temporary file beside the file, as copyFileAtomic() does, and moves that
    /// over the file on commit. What others write to the file meanwhile is replaced, so of two transactions the last
    /// commit wins. Such a stream uses the provider and must not outlive it. For errors of a commit see
    /// TransactionalStream; for permissions, attributes, links, streams that are open on the file, and power failures
    /// "What replaces a file" above.
    [[nodiscard]] std::unique_ptr<TransactionalStream> openTransactionalStream(const StorageIRI& location) const {
        return doOpenTransactionalStream(location);
    }

    /// The same, with the uncommitted bytes kept at `scratch`, from where the back end can move a file to the location.
    /// AlreadyExists if something is at `scratch`, NotFound if its folder is missing, InvalidLocation if it is the
    /// location itself, InUse if another opens the file there before the stream does, which then stays. Otherwise the
    /// file at `scratch` belongs to the stream.
    [[nodiscard]] std::unique_ptr<TransactionalStream> openTransactionalStreamAtScratchLocation(
        const StorageIRI& location, const StorageIRI& scratch) const {
        return doOpenTransactionalStreamAtScratchLocation(location, scratch);
    }

    // ---- listings: NotFound if nothing is there, NotAFolder for a file ----
    //
    // The order is the back end's. `wildcards` is a pattern as the class Wildcards reads it. A listing is taken when it
    // is asked for; the recursive ones take each folder's listing when its turn comes.
    //
    // Recursive listings name an entry by its path below the folder and give each folder before what it holds; their
    // wildcards apply to the last name of the path, and folders are walked whether they fit or not. A symbolic link to
    // a folder is given and not entered, except as the folder that the listing is asked for: links may lead back up,
    // and two of them in one folder make more paths than a lifetime can walk. So each folder costs a
    // getExtendedAttributes() beside its listing, as long as the back end supports that (see there for the name). Where
    // it does not say, links are entered, and only the depth ends the walk.
    //
    // A folder that is gone when its turn comes is passed over. One that cannot be listed, or lies more than 2048
    // folders deep, makes advance() throw; the walk continues after it if advance() is called again. At a time the
    // listings along one path are in memory, never the tree. Such an iterator, and its clones, use the provider and
    // must not outlive it.

    [[nodiscard]] std::unique_ptr<IFolderEntryIterator> listAll(const StorageIRI& folder) const {
        return doListAll(folder);
    }
    [[nodiscard]] std::unique_ptr<IFolderEntryIterator> listAll(const StorageIRI& folder,
                                                                const std::u16string& wildcards) const {
        return doListAllWildcards(folder, wildcards);
    }
    [[nodiscard]] std::unique_ptr<IFolderEntryIterator> listFiles(const StorageIRI& folder) const {
        return doListFiles(folder);
    }
    [[nodiscard]] std::unique_ptr<IFolderEntryIterator> listFiles(const StorageIRI& folder,
                                                                  const std::u16string& wildcards) const {
        return doListFilesWildcards(folder, wildcards);
    }
    [[nodiscard]] std::unique_ptr<IFolderEntryIterator> listFolders(const StorageIRI& folder) const {
        return doListFolders(folder);
    }
    [[nodiscard]] std::unique_ptr<IFolderEntryIterator> listFolders(const StorageIRI& folder,
                                                                    const std::u16string& wildcards) const {
        return doListFoldersWildcards(folder, wildcards);
    }
    [[nodiscard]] std::unique_ptr<IFolderNameIterator> listAllNamesOnly(const StorageIRI& folder) const {
        return doListAllNamesOnly(folder);
    }
    [[nodiscard]] std::unique_ptr<IFolderNameIterator> listAllNamesOnly(const StorageIRI& folder,
                                                                        const std::u16string& wildcards) const {
        return doListAllNamesOnlyWildcards(folder, wildcards);
    }
    [[nodiscard]] std::unique_ptr<IFolderNameIterator> listFoldersNamesOnly(const StorageIRI& folder) const {
        return doListFoldersNamesOnly(folder);
    }
    [[nodiscard]] std::unique_ptr<IFolderNameIterator> listFoldersNamesOnly(const StorageIRI& folder,
                                                                            const std::u16string& wildcards) const {
        return doListFoldersNamesOnlyWildcards(folder, wildcards);
    }
    [[nodiscard]] std::unique_ptr<IFolderNameIterator> listFilesNamesOnly(const StorageIRI& folder) const {
        return doListFilesNamesOnly(folder);
    }
    [[nodiscard]] std::unique_ptr<IFolderNameIterator> listFilesNamesOnly(const StorageIRI& folder,
                                                                          const std::u16string& wildcards) const {
        return doListFilesNamesOnlyWildcards(folder, wildcards);
    }
    [[nodiscard]] std::unique_ptr<IFolderEntryIterator> listAllRecursive(const StorageIRI& folder) const {
        return doListAllRecursive(folder);
    }
    [[nodiscard]] std::unique_ptr<IFolderEntryIterator> listAllRecursive(const StorageIRI& folder,
                                                                         const std::u16string& wildcards) const {
        return doListAllRecursiveWildcards(folder, wildcards);
    }
    [[nodiscard]] std::unique_ptr<IFolderNameIterator> listAllRecursiveNamesOnly(const StorageIRI& folder) const {
        return doListAllRecursiveNamesOnly(folder);
    }
    [[nodiscard]] std::unique_ptr<IFolderNameIterator> listAllRecursiveNamesOnly(
        const StorageIRI& folder, const std::u16string& wildcards) const {
        return doListAllRecursiveNamesOnlyWildcards(folder, wildcards);
    }

    // ---- change events ----

    /// Starts sending change events for a location to the callback. `context` is the host's own and is handed through
    /// to the provider; `onParent` is 1 when asked on behalf of a child, else 0. A provider may read neither. Whether a
    /// later call's callback is used too, or the first one serves all locations, is the provider's affair: a host that
    /// may meet either passes the same callback each time and tells locations apart by the event's first one.
    void startChangeNotification(const StorageIRI& location, const ChangeCallback& callback,
                                 const void* context = nullptr, std::int32_t onParent = 0) const {
        doStartChangeNotification(location, callback, context, onParent);
    }

    /// Starts sending change events for the folder that holds the location.
    void startChangeNotificationOnParent(const StorageIRI& location, const ChangeCallback& callback,
                                         const void* context = nullptr) const {
        doStartChangeNotificationOnParent(location, callback, context);
    }

    /// Asks for no more events for the location. Those under way may still arrive, and so does what a back end sends
    /// all the same.
    void stopChangeNotification(const StorageIRI& location) const { doStopChangeNotification(location); }

    /// Sends change events for a location by looking at it again and again, for back ends that cannot tell by
    /// themselves. What changes after the call has returned is told.
    ///
    /// NotFound if nothing is there, NotSupported for an interval that is not positive or an empty callback; errors of
    /// the back end at the first look; std::system_error when no thread can be had.
    ///
    /// The default compares what the provider's own operations say: of a folder its attributes and those of its
    /// children, but of nothing deeper, of a file its attributes. What comes and goes between two looks is not seen.
    ///  - A child is added, removed, or modified: its size, time of modification or permission to write.
    ///  - What has become a file from a folder, or the reverse, was removed and added.
    ///  - The location itself is modified as a child is; of a folder only what changes while no child comes or goes,
    ///    since its time moves with them.
    ///  - A location that is gone loses its children and is removed; it is looked for further on. When something is
    ///    there again it is modified, and its children are added.
    ///  - What cannot be looked at (Unavailable, AccessDenied, any error) counts as unchanged until it can.
    ///
    /// Events come one at a time on one thread of the provider, which looks at all of its locations in turn and ends
    /// with the last of them. Any number of locations may be polled: finding the next one costs next to nothing.
    /// `interval` lies between the end of one look and the next. Details hold an empty "originId". An exception of the
    /// callback is logged on the channel `foundation::storage` and dropped, as is the first of a row of failed looks.
    ///
    /// Started again for a location, in whatever spelling, the new callback and interval take the place of the old
    /// ones, and nothing is missed between the two. The replaced callback does not run any more when this returns,
    /// unless it is the caller. The callback may use the provider, start and stop polling included.
    ///
    /// Stop every location before the provider is destroyed: a look that is under way is an operation that uses it.
    /// The provider's destructor ends what is left, and nothing runs after it, but cannot undo a look that met a
    /// half-destroyed provider. A callback may itself destroy the provider.
    void startChangePollingMechanism(const StorageIRI& location, const ChangeCallback& callback,
                                     std::chrono::milliseconds interval) const {
        doStartChangePollingMechanism(location, callback, interval);
    }

    /// Ends the looking at a location. When it returns, no look at it and no callback of it runs any more, and the copy
    /// of the callback is gone; called from a callback it does not wait for that one, which is then the last. No error
    /// for a location that is not polled. Do not hold a lock that the callback takes.
    void stopChangePollingMechanism(const StorageIRI& location) const { doStopChangePollingMechanism(location); }

    // ---- the provider itself ----

    /// Whether the provider can do more than the basic operations.
    [[nodiscard]] bool hasFeature(ExtendedFeature feature) const { return doHasFeature(feature); }

    /// How the back end tells locations apart. By default the normalized texts are compared unit by unit, so that
    /// letter case counts.
    [[nodiscard]] PathComparator getPathComparator() const { return doGetPathComparator(); }

    /// The one spelling of a location that all its aliases share. By default the normalized location, which knows
    /// nothing of links; nothing has to be there, and nothing is asked of the back end.
    [[nodiscard]] StorageIRI getCanonicalLocation(const StorageIRI& location) const {
        return doGetCanonicalLocation(location);
    }

    /// Whether the back end tells letter case apart below the location. NotSupported unless the back end says.
    [[nodiscard]] FilenameSensitivity getFilenameSensitivity(const StorageIRI& location) const {
        return doGetFilenameSensitivity(location);
    }

    /// What the provider's cache holds. NotSupported without a cache.
    [[nodiscard]] ProviderCacheUsage getProviderCacheUsage() const { return doGetProviderCacheUsage(); }

    /// Tells the provider that the host is about to end. Does nothing unless the back end needs it.
    void shutdown() { doShutdown(); }

protected:
    IProvider() = default;

    // The slot order: 0 is the destructor; each of the following takes the next number. Append, never insert.
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
    virtual std::unique_ptr<IFolderEntryIterator> doListAll(const StorageIRI& folder) const = 0;
    virtual std::unique_ptr<IFolderEntryIterator> doListAllWildcards(const StorageIRI& folder,
                                                                     const std::u16string& wildcards) const;
    virtual std::unique_ptr<IFolderEntryIterator> doListFiles(const StorageIRI& folder) const = 0;
    virtual std::unique_ptr<IFolderEntryIterator> doListFilesWildcards(const StorageIRI& folder,
                                                                       const std::u16string& wildcards) const;
    virtual std::unique_ptr<IFolderEntryIterator> doListFolders(const StorageIRI& folder) const = 0;
    virtual std::unique_ptr<IFolderEntryIterator> doListFoldersWildcards(const StorageIRI& folder,
                                                                         const std::u16string& wildcards) const;
    virtual std::unique_ptr<IFolderNameIterator> doListAllNamesOnly(const StorageIRI& folder) const;
    virtual std::unique_ptr<IFolderNameIterator> doListAllNamesOnlyWildcards(const StorageIRI& folder,
                                                                             const std::u16string& wildcards) const;
    virtual std::unique_ptr<IFolderNameIterator> doListFoldersNamesOnly(const StorageIRI& folder) const;
    virtual std::unique_ptr<IFolderNameIterator> doListFoldersNamesOnlyWildcards(const StorageIRI& folder,
                                                                                 const std::u16string& wildcards) const;
    virtual std::unique_ptr<IFolderNameIterator> doListFilesNamesOnly(const StorageIRI& folder) const;
    virtual std::unique_ptr<IFolderNameIterator> doListFilesNamesOnlyWildcards(const StorageIRI& folder,
                                                                               const std::u16string& wildcards) const;
    virtual std::unique_ptr<IFolderEntryIterator> doListAllRecursive(const StorageIRI& folder) const;
    virtual std::unique_ptr<IFolderEntryIterator> doListAllRecursiveWildcards(const StorageIRI& folder,
                                                                              const std::u16string& wildcards) const;
    virtual std::unique_ptr<IFolderNameIterator> doListAllRecursiveNamesOnly(const StorageIRI& folder) const;
    virtual std::unique_ptr<IFolderNameIterator> doListAllRecursiveNamesOnlyWildcards(
        const StorageIRI& folder, const std::u16string& wildcards) const;
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
    /// What polls for changes; null until the provider is polled for the first time.
    mutable std::atomic<detail::PollerHolder*> m_poller{nullptr};
};

}  // namespace foundation::storage::provider
