package com.corvallen.storage.provider;

import java.util.HashMap;

/**
 * A storage back end: the operations that a native host calls on files and folders.
 *
 * <p><b>How it is used.</b> A class with a constructor without arguments is plugged in by its name; any instance can be
 * plugged in directly. The host looks up the 22 methods by name and signature on the object's own class. Implementing
 * this interface ensures that all of them exist. Those declared {@code default} here throw {@link
 * ErrorCode#NOT_SUPPORTED} or do nothing, so a read-only back end needs only six methods.
 *
 * <p><b>Threading.</b> The host calls from any of its threads, from several at a time, without a lock; the back end
 * must be thread-safe. Every call may block. Only {@link #dispose} never overlaps another call of the same provider:
 * each provider over the object calls it once, after all its other calls have returned.
 *
 * <p><b>Results.</b> A method that returns an object or an array returns one or throws. It never returns {@code null},
 * and an array contains no {@code null}: the native side does not check, and would crash.
 *
 * <p><b>Failures.</b> Expected failures are reported with a {@link ProviderException}. Each method lists the codes that
 * a host can act on. In addition, every method may throw
 *
 * <ul>
 *   <li>{@link ErrorCode#INVALID_LOCATION} if the location does not belong to this back end, or is {@code null}, which
 *       stands for a location that the host could not express;
 *   <li>{@link ErrorCode#ACCESS_DENIED} if the back end refuses, for example because it is read-only;
 *   <li>{@link ErrorCode#UNAVAILABLE} if the storage cannot be reached, or the back end has been disposed of;
 *   <li>{@link ErrorCode#NOT_SUPPORTED} if the back end does not offer the operation;
 *   <li>{@link ErrorCode#UNKNOWN} if the back end cannot say more.
 * </ul>
 *
 * <p>A method that throws has changed nothing, unless it says otherwise. A host may interrupt the thread of a long
 * operation, such as a recursive removal or a move that copies. The method then soon throws UNAVAILABLE with the word
 * "interrupted" in its message, removes what it has created, and leaves the thread interrupted.
 *
 * <p><b>Files, folders, links.</b> A folder contains entries; everything else that exists is a file. A symbolic link is
 * treated as what it leads to, except that removing or moving it acts on the link itself.
 */
public interface StorageProvider {
    /**
     * Returns whether a file exists.
     *
     * @param location the location to check
     * @return true for a file; false if nothing or a folder is there, or if a parent is missing or is a file
     * @throws ProviderException with ACCESS_DENIED or UNAVAILABLE if the back end cannot tell; it never guesses
     */
    boolean fileExists(StorageURI location) throws ProviderException;

    /**
     * Returns whether a folder exists.
     *
     * @param location the location to check
     * @return true for a folder; false if nothing or a file is there, or if a parent is missing or is a file
     * @throws ProviderException with ACCESS_DENIED or UNAVAILABLE if the back end cannot tell; it never guesses
     */
    boolean folderExists(StorageURI location) throws ProviderException;

    /**
     * Creates an empty file. This is atomic: of several callers at the same time, one succeeds and the others get
     * ALREADY_EXISTS.
     *
     * @param location the file to create
     * @throws ProviderException with ALREADY_EXISTS if a file or folder is there (it is left alone), NOT_FOUND if the
     *     parent folder is missing, NOT_A_FOLDER if the parent is a file, STORAGE_FULL
     */
    default void createFile(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Creates one folder in an existing parent. This is atomic, like {@link #createFile}.
     *
     * @param location the folder to create
     * @throws ProviderException with ALREADY_EXISTS if a file or folder is there (it is left alone), NOT_FOUND if the
     *     parent folder is missing, NOT_A_FOLDER if the parent is a file, STORAGE_FULL
     */
    default void createFolder(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Removes a file. If the location is a link, the link is removed and what it leads to remains.
     *
     * @param location the file to remove
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FILE for a folder, IN_USE if the file is open
     *     and the back end cannot remove it then
     */
    default void removeFile(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Removes an empty folder. If the location is a link to a folder, the link is removed, whether or not the folder is
     * empty.
     *
     * @param location the folder to remove
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FOLDER for a file, FOLDER_NOT_EMPTY if it has
     *     children (all are kept), ACCESS_DENIED for the root of a storage
     */
    default void removeFolder(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Removes a folder and everything in it. Links in it are removed and never followed. This is not atomic: after a
     * failure part of the content may be gone.
     *
     * <p>The host calls it without asking for {@link ExtendedFeature#RecursiveFolderRemoval} first. A back end without
     * the feature throws NOT_SUPPORTED here and removes nothing.
     *
     * @param location the folder to remove
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FOLDER for a file, ACCESS_DENIED for the root
     *     of a storage, IN_USE if something in it is open and the back end cannot remove it then
     */
    default void removeFolderRecursively(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Returns whether the back end has an optional feature. <b>Must not throw</b>: the host does not check for an
     * exception here.
     *
     * @param feature the feature asked about
     * @return true only if the back end does what the feature describes at every location that it serves
     */
    default boolean hasFeature(ExtendedFeature feature) {
        return false;
    }

    /**
     * Moves or renames a file. Its content arrives complete: a partial file is never visible at the target. If the
     * storage allows it, replacing is atomic, so at any time the target is either the old file or the new one. A move
     * between different storages removes the source last, so a failure leaves it in place. Moving a file to where it
     * already is does nothing.
     *
     * <p>If a file at the target is replaced, a link there is followed first and remains. The new file takes over the
     * owner, group, permissions and attached ({@code user:}) values of the replaced one, as far as the storage has them
     * and the back end may set them. It keeps the attached values of the source, except those whose name the replaced
     * file also has. Anyone who may not read the result cannot read its content during the move either. Other hard
     * links to the replaced file keep the old content. If the target is free, the file keeps its own owner, group,
     * permissions and values. Times are always those of the source.
     *
     * <p>After a power failure, a file that was moved between storages is in at least one place. Nothing more is
     * promised: the storage decides when a rename (including one that replaces a file) and what was written to a closed
     * channel reach the disk.
     *
     * @param source the file
     * @param target its new location
     * @param replace whether an existing file at the target is replaced; a folder never is
     * @throws ProviderException with
     *     <ul>
     *       <li>NOT_FOUND if the source or the target's parent is missing;
     *       <li>NOT_A_FILE if the source is a folder, or if {@code replace} is true and the target is a folder;
     *       <li>NOT_A_FOLDER if the target's parent is a file;
     *       <li>ALREADY_EXISTS if {@code replace} is false and the target exists;
     *       <li>IN_USE if the file is open and the back end cannot move it then, or if it changes during the move;
     *       <li>NOT_SUPPORTED if the target to be replaced is neither file nor folder, or if the target's storage
     *           cannot hold the content or its time;
     *       <li>INVALID_LOCATION if {@code replace} is true and the source is a link to the target;
     *       <li>STORAGE_FULL.
     *     </ul>
     */
    default void moveFile(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, source);
    }

    /**
     * Moves or renames a folder and everything in it. A move between different storages removes from the source only
     * what it copied. What others wrote to the source during the move remains there, and IN_USE is thrown, although the
     * folder has arrived at the target. Moving a folder to where it already is does nothing.
     *
     * @param source the folder
     * @param target its new location
     * @param replace whether an existing folder at the target is replaced with everything in it; a file never is. The
     *     old content is removed only after the new content has arrived, so a failed move loses neither
     * @throws ProviderException with
     *     <ul>
     *       <li>NOT_FOUND if the source or the target's parent is missing;
     *       <li>NOT_A_FOLDER if the source or the target's parent is a file, or if {@code replace} is true and the
     *           target is a file;
     *       <li>ALREADY_EXISTS if {@code replace} is false and the target exists;
     *       <li>INVALID_LOCATION if one of the two lies inside the other;
     *       <li>ACCESS_DENIED for the root of a storage;
     *       <li>NOT_SUPPORTED if the target's storage cannot hold something in the folder;
     *       <li>IN_USE, STORAGE_FULL.
     *     </ul>
     */
    default void moveFolder(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, source);
    }

    /**
     * Returns the attributes of a file.
     *
     * @param location the file
     * @return the attributes, never null
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FILE for a folder
     */
    FileAttributes getFileAttributes(StorageURI location) throws ProviderException;

    /**
     * Returns the attributes of a folder.
     *
     * @param location the folder
     * @return the attributes, never null
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FOLDER for a file
     */
    FolderAttributes getFolderAttributes(StorageURI location) throws ProviderException;

    /**
     * Sets the time of last modification of a file or folder. A storage with a coarser clock rounds it down, by less
     * than two seconds.
     *
     * @param location the file or folder
     * @param lastModified milliseconds since 1970-01-01 00:00:00 UTC, negative before that
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_SUPPORTED if the storage cannot hold the time
     *     (the old one remains) or if the time cannot be set at all, as for a pipe, IN_USE if a channel has the file
     *     open exclusively and the time cannot be set while it does
     */
    default void setLastModified(StorageURI location, long lastModified) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Lists the direct children of a folder, in any order.
     *
     * @param location the folder
     * @return one entry for each child; empty for an empty folder, never null, and no element is null
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FOLDER for a file
     */
    FolderListEntry[] listFolder(StorageURI location) throws ProviderException;

    /**
     * Opens a file for reading and writing, at position 0.
     *
     * @param location the file
     * @param create whether a missing file is created; its parent folder must be there
     * @param truncate whether the content of an existing file is discarded
     * @param exclusive whether no other channel of this back end may be open on the file at the same time
     * @return the channel, never null
     * @throws ProviderException with NOT_FOUND if the file is missing and {@code create} is false, or if its parent
     *     folder is missing, NOT_A_FILE for a folder, NOT_A_FOLDER if the parent is a file, ACCESS_DENIED if the file
     *     may not be written, IN_USE (with the file unchanged) if it is open exclusively, if {@code exclusive} is true
     *     and it is open, or if it is open for writing and the storage cannot have two writers
     */
    default ProviderChannel getChannel(StorageURI location, boolean create, boolean truncate, boolean exclusive)
            throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Opens a file for reading, at position 0.
     *
     * @param location the file
     * @return the channel, never null; its {@link ProviderChannel#write} throws ACCESS_DENIED
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FILE for a folder, NOT_A_FOLDER if the parent
     *     is a file, IN_USE if it is open exclusively
     */
    ProviderChannel getReadOnlyChannel(StorageURI location) throws ProviderException;

    /**
     * Starts sending the events of a file or folder to a publisher. If the location is already watched, the new
     * publisher replaces the old one, which stays open.
     *
     * <p>No change after this method has returned is missed, so a host starts first and then lists. An entry that
     * appears and disappears within a moment may be left out. Removing a folder is reported for everything below it. A
     * new folder is reported first, as if empty; its contents follow. If the location is removed or moved away, the
     * last event is {@link EventKind#SelfRemoved}.
     *
     * @param location what to watch; a folder's direct children are watched too, and with {@link
     *     ExtendedFeature#RecursiveChangeEvents} everything below it
     * @param publisher where the events go; only {@link #dispose} closes it
     * @throws ProviderException with NOT_FOUND if nothing is there
     */
    default void publishEventsFor(StorageURI location, EventPublisher publisher) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Stops sending the events of a location. Events already on their way may still arrive. Does nothing if the
     * location is not watched or no longer exists. The publisher stays open.
     *
     * @param location the location given to {@link #publishEventsFor}
     * @throws ProviderException with the codes that every method may throw
     */
    default void stopPublishingEventsFor(StorageURI location) throws ProviderException {}

    /**
     * Releases everything: watches, open channels, connections. Each provider over this object calls it once, as its
     * last call. <b>Must not throw</b>: the host does not check for an exception here.
     *
     * <p>Closes every publisher that {@link #publishEventsFor} received; closing one waits for its running deliveries.
     * This matters because the host frees the memory to which events are delivered as soon as this method returns.
     *
     * <p>A back end that writes data only when it is disposed of should also implement {@link AutoCloseable}. A host
     * that created the object itself can then call {@code close()} first, which throws if that data could not be
     * written.
     *
     * <p>Operations that are called afterwards throw UNAVAILABLE.
     */
    default void dispose() {}

    /**
     * Returns the extended attributes of a file or folder. An attribute that cannot be read, because access is denied
     * or the file does not have it, is left out; a failure of the storage is thrown.
     *
     * <p>A back end with links marks a link with the attribute {@code basic:isSymbolicLink} and the value {@code true}.
     * The host's recursive listings ask for it before they enter a folder, and do not enter a link.
     *
     * @param location the file or folder
     * @return the attributes, {@link ExtendedAttributes#none()} if it has none, never null
     * @throws ProviderException with NOT_FOUND if nothing is there
     */
    default ExtendedAttributes getExtendedAttributes(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Returns the capacity and the occupied space of the storage that holds a location.
     *
     * @param location any location in that storage
     * @return the information, never null
     * @throws ProviderException with NOT_FOUND if nothing is there
     */
    default ProviderStorageInfo getProviderStorageInfo(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Receives settings from the host. May be called at any time, and more than once.
     *
     * @param settings names and values; a null value means an empty one. Currently the host sends only {@code
     *     gds.enableContentCache}. A back end ignores names that it does not know
     * @throws ProviderException with NOT_SUPPORTED if a known setting has a value that the back end cannot use; no
     *     setting is changed then
     */
    default void configure(HashMap<String, String> settings) throws ProviderException {}
}
