package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.ExtendedFeature;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.ProviderStorageInfo;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.util.HashMap;
import java.util.Objects;

/**
 * A storage back end on top of {@code java.nio.file}.
 *
 * <p><b>Locations.</b> {@code java:///abs/path} is a path of the default file system, limited only by what the process
 * may do. {@code java://name/path} is a path in the mount {@code name}, which the system property {@code
 * storage.mount.<name>} gives as a URI of {@code java.nio.file}: {@code file:///srv/data}, {@code
 * jar:file:///data/a.zip}, or whatever a file-system provider on the class path understands. If the property is not
 * set, or leads nowhere, operations throw UNAVAILABLE, and the next one reads it again.
 *
 * <p><b>A mount is a jail.</b> No location and no symbolic link leads out of it: an operation that would leave it fails
 * with ACCESS_DENIED or INVALID_LOCATION, and nothing outside is touched. Links that stay inside are followed. This
 * protects against locations and existing links, not against someone who changes links on the disk while an operation
 * runs.
 *
 * <p><b>Archives.</b> A zip archive on disk is shared by all providers of the process. Until the last of them is
 * disposed of, the archive is only read. Then a new archive with the changes is written beside the old one, read back,
 * synced, and renamed over it; it takes over permissions and user attributes. {@link #close} reports whether that
 * worked. If it did not, the old archive is unchanged, no other file is left, and the mount can be opened again. The
 * first change creates the hidden file {@code .storage-archive-NAME} and locks it. While it exists, another process
 * that begins to change the archive gets IN_USE. So does this process if another program has changed the archive.
 * Readers are never disturbed. If a process is killed, the next writer removes its hidden file. A link to an archive
 * stays a link.
 *
 * <p>If the process already has an archive or other file system open, it is used as it is and left open, and none of
 * this applies.
 *
 * <p><b>Atomicity.</b> Creating is exclusive. On the default file system a file replaces another atomically, and a
 * folder moves by one rename. Between file systems, and for folders inside archives, content is copied and forced to
 * the disk, and the source is removed last, except for what has changed since it was copied. During a move, private
 * entries whose names begin with {@code .storage-} may exist beside source and target.
 *
 * <p><b>Open files.</b> Only files and folders are opened. A pipe, socket or device has attributes, and can be moved
 * and removed. Exclusive use holds within the process, and on the default file system also against other processes that
 * ask for locks. No other operation of this back end breaks exclusive use: one that would have to open the file leaves
 * that part out or throws IN_USE. In a zip archive a file has one writer at a time, and cannot be removed or moved
 * while it is written.
 *
 * <p><b>Events</b> report the differences between scans of the storage, made when the watch service signals a change,
 * or every second for folders that it does not watch and where the last scan has failed.
 *
 * <p>Safe on any thread; every operation may block on the storage.
 */
public final class NioProvider implements StorageProvider, AutoCloseable {
    private final Mounts mounts = new Mounts();
    private final ContentCache cache = new ContentCache();
    private final ChannelSet channels = new ChannelSet();
    private final AttributeViews attributes = new AttributeViews(new OwnerNames());
    private final Watcher watcher;

    /** Makes a provider. Mounts are opened when they are first used. */
    public NioProvider() {
        this(new Watcher(WatchSignals::open, Watcher.INTERVAL));
    }

    NioProvider(Watcher watcher) {
        this.watcher = watcher;
    }

    @Override
    public boolean fileExists(StorageURI location) throws ProviderException {
        return kindAt(location) == EntryKind.FILE;
    }

    @Override
    public boolean folderExists(StorageURI location) throws ProviderException {
        return kindAt(location) == EntryKind.FOLDER;
    }

    private EntryKind kindAt(StorageURI location) throws ProviderException {
        return Failures.translated(location, () -> EntryKind.of(mounts.of(location).follow(location)));
    }

    @Override
    public void createFile(StorageURI location) throws ProviderException {
        Failures.translated(location, () -> Creation.createFile(changing(location)));
    }

    @Override
    public void createFolder(StorageURI location) throws ProviderException {
        Failures.translated(location, () -> Creation.createFolder(changing(location)));
    }

    @Override
    public void removeFile(StorageURI location) throws ProviderException {
        Failures.translated(location, () -> Removal.removeFile(changing(location)));
    }

    @Override
    public void removeFolder(StorageURI location) throws ProviderException {
        Failures.translated(location, () -> Removal.removeFolder(changing(location)));
    }

    @Override
    public void removeFolderRecursively(StorageURI location) throws ProviderException {
        Failures.translated(location, () -> Removal.removeFolderRecursively(changing(location)));
    }

    @Override
    public void moveFile(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        Entry from = Failures.translated(source, () -> changing(source));
        Entry to = Failures.translated(target, () -> changing(target));
        Failures.translatedMove(from, to, () -> FileMove.move(from, to, replace));
    }

    @Override
    public void moveFolder(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        Entry from = Failures.translated(source, () -> changing(source));
        Entry to = Failures.translated(target, () -> changing(target));
        Failures.translatedMove(from, to, () -> FolderMove.move(from, to, replace));
    }

    @Override
    public boolean hasFeature(ExtendedFeature feature) {
        return Features.has(feature);
    }

    @Override
    public FileAttributes getFileAttributes(StorageURI location) throws ProviderException {
        return Failures.translated(location, () -> Attributes.ofFile(found(location)));
    }

    @Override
    public FolderAttributes getFolderAttributes(StorageURI location) throws ProviderException {
        return Failures.translated(location, () -> Attributes.ofFolder(found(location)));
    }

    @Override
    public void setLastModified(StorageURI location, long lastModified) throws ProviderException {
        Failures.translated(location, () -> {
            Found found = found(location);
            mounts.of(location).beginWriting();
            Attributes.setLastModified(found, lastModified);
        });
    }

    @Override
    public ExtendedAttributes getExtendedAttributes(StorageURI location) throws ProviderException {
        return Failures.translated(location, () -> attributes.of(found(location), entry(location).isLink()));
    }

    @Override
    public ProviderStorageInfo getProviderStorageInfo(StorageURI location) throws ProviderException {
        return Failures.translated(location, () -> StorageSpace.of(found(location)));
    }

    @Override
    public FolderListEntry[] listFolder(StorageURI location) throws ProviderException {
        return Failures.translated(location, () -> Listing.of(found(location), mounts.of(location)));
    }

    @Override
    public ProviderChannel getChannel(StorageURI location, boolean create, boolean truncate, boolean exclusive)
            throws ProviderException {
        return Failures.translated(location, () -> opening(location).forWriting(create, truncate, exclusive));
    }

    @Override
    public ProviderChannel getReadOnlyChannel(StorageURI location) throws ProviderException {
        return Failures.translated(location, () -> opening(location).forReading());
    }

    /**
     * Begins to report the events of a file, or of a folder and everything below it. Events are the differences between
     * two scans; an entry that appears and disappears in between is reported as a file, or not at all. A rename is a
     * removal and an addition. Links are not entered. A watch ends with SelfRemoved. The origin of a change is not
     * known, so it is null.
     */
    @Override
    public void publishEventsFor(StorageURI location, EventPublisher publisher) throws ProviderException {
        Objects.requireNonNull(publisher, "publisher");
        Failures.translated(location, () -> watcher.start(found(location), mounts.of(location), publisher));
    }

    @Override
    public void stopPublishingEventsFor(StorageURI location) throws ProviderException {
        Mounts.requireLocation(location);
        watcher.stop(location);
    }

    /** Reads {@code gds.enableContentCache}: {@code true} or {@code false}. An empty value means false. */
    @Override
    public void configure(HashMap<String, String> settings) throws ProviderException {
        cache.configure(settings);
    }

    /** Returns the content cache, for tests. */
    ContentCache cache() {
        return cache;
    }

    /**
     * Ends all events; when it returns, no publisher is delivering any more. Closes the channels that are still open,
     * and the file systems that were opened for mounts and that no other provider uses. Failures are logged.
     */
    @Override
    public void dispose() {
        watcher.dispose();
        channels.dispose();
        mounts.dispose();
    }

    /**
     * Does the same as {@link #dispose}, and throws if a file system cannot be closed; what was written to an archive
     * may then be lost. Everything else is still released, and disposal has nothing left to do.
     *
     * @throws ProviderException with the root of the mount, and STORAGE_FULL, ACCESS_DENIED or another code for the
     *     cause
     */
    @Override
    public void close() throws ProviderException {
        watcher.dispose();
        channels.dispose();
        mounts.close();
    }

    private ChannelOpening opening(StorageURI location) throws ProviderException {
        return new ChannelOpening(location, mounts.of(location), channels, cache);
    }

    private Found found(StorageURI location) throws ProviderException, IOException {
        return Found.at(location, mounts.of(location));
    }

    /** Returns the entry that is about to change. */
    private Entry changing(StorageURI location) throws ProviderException, IOException {
        Mount mount = mounts.of(location);
        mount.beginWriting();
        return mount.entry(location);
    }

    private Entry entry(StorageURI location) throws ProviderException, IOException {
        return mounts.of(location).entry(location);
    }
}
