package com.corvallen.storage.provider;

import java.util.HashMap;

/**
 * A storage back end: the operations that a native host calls on files and folders.
 *
 * <p><b>How it is used.</b> A class with a public constructor without arguments is plugged in by its name, and any
 * instance can be plugged in directly. The host looks the 22 methods up by name and signature on the object's own
 * class. Implementing this interface is how an author makes sure they are all there; the ones declared {@code default}
 * here refuse with {@link ErrorCode#NOT_SUPPORTED}, or have nothing to do, so that a read-only back end consists of
 * six.
 *
 * <p><b>Threading.</b> The host calls from any of its threads, several at a time, with no lock around them; the back
 * end sees to its own safety. Every call may block. Only {@link #dispose} is alone: each provider over the
 * object calls it once, after everything else of that provider has returned.
 *
 * <p><b>Results.</b> A method that returns an object or an array returns one, or throws; never {@code null}, and no
 * {@code null} inside an array. The native side does not test for it and would not survive it.
 *
 * <p><b>Failures.</b> What is foreseen is reported by a {@link ProviderException}. The codes named at each method are
 * those for which the host can do something sensible. Beside them every method may throw
 *
 * <ul>
 *   <li>{@link ErrorCode#INVALID_LOCATION} if the location is none of this back end, or {@code null}, which stands for
 *       a location that the host could not express;
 *   <li>{@link ErrorCode#ACCESS_DENIED} if the back end refuses, for example because it is read-only;
 *   <li>{@link ErrorCode#UNAVAILABLE} if the storage cannot be reached, or the back end has been disposed of;
 *   <li>{@link ErrorCode#NOT_SUPPORTED} if the back end does not offer the operation;
 *   <li>{@link ErrorCode#UNKNOWN} if it cannot say more.
 * </ul>
 *
 * <p>A method that throws has changed nothing, except where it says otherwise. The thread of a method that takes long,
 * a recursive removal or a move that copies, may be interrupted: the method then stops soon with UNAVAILABLE and the
 * word "interrupted" in its message, removes what it has made, and leaves the thread interrupted.
 *
 * <p><b>Files, folders, links.</b> A folder holds entries; everything else that exists is a file. A symbolic link
 * counts as what it leads to, but removing or moving it acts on the link.
 */
public interface StorageProvider {
    /**
     * Tells whether a file exists.
     *
     * @param location where
     * @return true for a file; false if nothing is there, a folder is there, or a folder on the way is missing or is
     *     a file
     * @throws ProviderException with ACCESS_DENIED or UNAVAILABLE if the back end cannot tell; it never guesses
     */
    boolean fileExists(StorageURI location) throws ProviderException;

    /**
     * Tells whether a folder exists.
     *
     * @param location where
     * @return true for a folder; false if nothing is there, a file is there, or a folder on the way is missing or is a
     *     file
     * @throws ProviderException with ACCESS_DENIED or UNAVAILABLE if the back end cannot tell; it never guesses
     */
    boolean folderExists(StorageURI location) throws ProviderException;

    /**
     * Creates an empty file. Atomic: of several callers at the same time, one succeeds and the others get
     * ALREADY_EXISTS.
     *
     * @param location where
     * @throws ProviderException with ALREADY_EXISTS if a file or folder is there (it is left alone), NOT_FOUND if the
     *     parent folder is missing, NOT_A_FOLDER if the parent is a file, STORAGE_FULL
     */
    default void createFile(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Creates one folder; its parent is there already. Atomic, as {@link #createFile}.
     *
     * @param location where
     * @throws ProviderException with ALREADY_EXISTS if a file or folder is there (it is left alone), NOT_FOUND if the
     *     parent folder is missing, NOT_A_FOLDER if the parent is a file, STORAGE_FULL
     */
    default void createFolder(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Removes a file. A link is removed itself; what it leads to stays.
     *
     * @param location which
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FILE for a folder, IN_USE if the file is open
     *     and the back end cannot remove it then
     */
    default void removeFile(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Removes an empty folder. A link to a folder is removed itself, whatever is in the folder.
     *
     * @param location which
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FOLDER for a file, FOLDER_NOT_EMPTY if it has
     *     children (all are kept), ACCESS_DENIED for the root of a storage
     */
    default void removeFolder(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Removes a folder with everything in it. Links in it are removed themselves and never followed. Not atomic: after
     * a failure part of the content may be gone.
     *
     * <p>The host calls it without asking for {@link ExtendedFeature#RecursiveFolderRemoval} first, so a back end
     * without the feature throws NOT_SUPPORTED here, and removes nothing.
     *
     * @param location which
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FOLDER for a file, ACCESS_DENIED for the root
     *     of a storage, IN_USE if something in it is open and the back end cannot remove it then
     */
    default void removeFolderRecursively(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Returns whether an optional ability is there. <b>Must not throw</b>: the host does not look for an exception
     * here.
     *
     * @param feature which
     * @return true only if the back end does what the feature says, at every location it serves
     */
    default boolean hasFeature(ExtendedFeature feature) {
        return false;
    }

    /**
     * Moves or renames a file. What it holds arrives whole: at no time is part of it visible at the target. Where the
     * storage can, replacing is atomic and the target is the old file or the new one at any time; a move between
     * different storages removes the source last, so a failure leaves it in place.
     *
     * <p>Where a file replaces another, a link at the target is followed first and stays. What replaces takes over
     * owner, group, permissions and attached ({@code user:}) values of what it replaces, as far as the storage has
     * them and the back end may set them. Attached values of the source stay beside them; of two with one name the
     * replaced file's value stays. No one who may not read the result can read it on the way. A file that takes a free
     * name keeps its own. Times are the source's in both cases. Other hard links of the replaced file keep the old
     * content.
     *
     * <p>After a power failure, a file that moved between storages is in one place at least. Nothing more is promised:
     * a rename, one that replaces a file included, and what was written to a channel that was closed, reach the disk
     * when the storage sees fit.
     *
     * @param source which file
     * @param target its new location
     * @param replace whether a file that exists at the target is replaced; a folder never is
     * @throws ProviderException with NOT_FOUND if the source or the target's parent is missing, NOT_A_FILE if the
     *     source is a folder, or if replacing is asked for and the target is a folder, ALREADY_EXISTS if the target
     *     exists and replacing is not asked for, NOT_A_FOLDER if the target's parent is a file, STORAGE_FULL, IN_USE if
     *     the file is open and the back end cannot move it then, or if it changes while it is moved, NOT_SUPPORTED if
     *     the target is to be replaced and is neither file nor folder, or cannot hold what is moved or its time,
     *     INVALID_LOCATION if the source is a link to the target. A move to where the file is already does nothing
     */
    default void moveFile(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, source);
    }

    /**
     * Moves or renames a folder with everything in it. A move between different storages removes from the source only
     * what was copied. What others have written there meanwhile stays, which is IN_USE: the folder has arrived then,
     * and some of the source is still there.
     *
     * @param source which folder
     * @param target its new location
     * @param replace whether a folder that exists at the target is replaced with everything in it; a file never is. The
     *     old content is removed only after the new has arrived, so a failure to move loses neither
     * @throws ProviderException with NOT_FOUND if the source or the target's parent is missing, NOT_A_FOLDER if the
     *     source is a file, if the target's parent is a file, or if replacing is asked for and the target is a file,
     *     ALREADY_EXISTS if the target exists and replacing is not asked for, INVALID_LOCATION if one of the two lies
     *     inside the other, ACCESS_DENIED for the root of a storage, STORAGE_FULL, IN_USE, NOT_SUPPORTED if the target
     *     cannot hold something in it. A move to where the folder is already does nothing
     */
    default void moveFolder(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, source);
    }

    /**
     * Returns the attributes of a file.
     *
     * @param location which
     * @return the attributes, never null
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FILE for a folder
     */
    FileAttributes getFileAttributes(StorageURI location) throws ProviderException;

    /**
     * Returns the attributes of a folder.
     *
     * @param location which
     * @return the attributes, never null
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FOLDER for a file
     */
    FolderAttributes getFolderAttributes(StorageURI location) throws ProviderException;

    /**
     * Sets the time of last modification of a file or folder. A storage with a coarser clock keeps the next lower time
     * that it can, less than two seconds before the given one.
     *
     * @param location which
     * @param lastModified milliseconds since 1970-01-01 00:00:00 UTC, negative before that
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_SUPPORTED if the storage cannot hold the time
     *     (the old one stays then) and for what has no time that can be set, such as a pipe, IN_USE if a channel holds
     *     the file exclusively and the time cannot be set beside it
     */
    default void setLastModified(StorageURI location, long lastModified) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Lists the direct children of a folder, in any order.
     *
     * @param location which folder
     * @return one entry for each child; empty for an empty folder, never null, and no element is null
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FOLDER for a file
     */
    FolderListEntry[] listFolder(StorageURI location) throws ProviderException;

    /**
     * Opens a file for reading and writing, at position 0.
     *
     * @param location which file
     * @param create whether a missing file is created; its parent folder must be there
     * @param truncate whether what an existing file holds is thrown away
     * @param exclusive whether no other channel of this back end may be open on the file at the same time
     * @return the channel, never null
     * @throws ProviderException with NOT_FOUND if the file is missing and not to be created, or its parent folder is
     *     missing, NOT_A_FILE for a folder, NOT_A_FOLDER if the parent is a file, ACCESS_DENIED if it may not be
     *     written, IN_USE if it is open exclusively, if exclusive use is asked for and it is open, or if it is open
     *     for writing and the storage cannot have two writers; the file is unchanged then
     */
    default ProviderChannel getChannel(StorageURI location, boolean create, boolean truncate, boolean exclusive)
            throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Opens a file for reading, at position 0.
     *
     * @param location which file
     * @return the channel, never null; its {@link ProviderChannel#write} throws ACCESS_DENIED
     * @throws ProviderException with NOT_FOUND if nothing is there, NOT_A_FILE for a folder, NOT_A_FOLDER if the parent
     *     is a file, IN_USE if it is open exclusively
     */
    ProviderChannel getReadOnlyChannel(StorageURI location) throws ProviderException;

    /**
     * Begins to send the events of a file or folder to a publisher. For a location that is watched already the new
     * publisher takes the place of the old one, which stays open. Nothing that changes after this has returned is
     * missed, so a host starts first and lists then; what comes and goes within a moment may be left out. Removing
     * a folder is reported for everything below it. A new folder is reported first, as if empty; its contents follow.
     * A location that is removed or moves away ends with {@link EventKind#SelfRemoved}.
     *
     * @param location what to watch; for a folder its direct children count too, and with {@link
     *     ExtendedFeature#RecursiveChangeEvents} everything below
     * @param publisher where the events go; {@link #dispose} closes it, and nothing closes it earlier
     * @throws ProviderException with NOT_FOUND if nothing is there
     */
    default void publishEventsFor(StorageURI location, EventPublisher publisher) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Ends the events of a location. Events that are on their way may still arrive. A location that is not watched, or
     * does not exist any more, is fine: there is nothing to end. The publisher stays open.
     *
     * @param location what was given to {@link #publishEventsFor}
     * @throws ProviderException with the codes that every method may have
     */
    default void stopPublishingEventsFor(StorageURI location) throws ProviderException {}

    /**
     * Releases everything: watches, open channels, connections. The last call of a provider, made
     * once; several providers may be made over one object, and each calls it. The host frees the memory that events are
     * delivered to as soon as this returns. So every publisher that {@link #publishEventsFor}
     * was given is closed here, which waits for the deliveries that run. <b>Must not throw</b>: the host does not look
     * for an exception here.
     *
     * <p>A back end that writes data only when it is disposed of should also implement {@link AutoCloseable}. A host
     * that created the object itself can then call {@code close()} first, which throws if that data could not be
     * written.
     *
     * <p>Operations that are called afterwards throw UNAVAILABLE.
     */
    default void dispose() {}

    /**
     * Returns the extended attributes of a file or folder. One that cannot be read, because it is denied or not offered
     * for this file, is left out; a storage that fails is an error.
     *
     * <p>A back end with links says which folders are links by the attribute {@code basic:isSymbolicLink} with the
     * value {@code true}: a host's recursive listings ask for it before they enter a folder, and do not enter a link.
     *
     * @param location which
     * @return the attributes, {@link ExtendedAttributes#none()} if it has none, never null
     * @throws ProviderException with NOT_FOUND if nothing is there
     */
    default ExtendedAttributes getExtendedAttributes(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Returns capacity and occupied space of the storage behind a location.
     *
     * @param location any location in that storage
     * @return the information, never null
     * @throws ProviderException with NOT_FOUND if nothing is there
     */
    default ProviderStorageInfo getProviderStorageInfo(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    /**
     * Receives settings of the host. May be called at any time, also again.
     *
     * @param settings name to value, both text; a value may be null, which means that it is empty. The one setting that
     *     the host sends today is {@code gds.enableContentCache}. Names a back end does not know are passed over
     * @throws ProviderException with NOT_SUPPORTED if a known setting has a value that cannot be followed
     */
    default void configure(HashMap<String, String> settings) throws ProviderException {}
}
