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
 * <p><b>Locations.</b> {@code java:///abs/path} is a path of the default file system, with no more limits than the
 * process has. {@code java://name/path} is a path in the mount {@code name}, which the system property {@code
 * storage.mount.<name>} gives as a URI of {@code java.nio.file}: {@code file:///srv/data}, {@code
 * jar:file:///data/a.zip}, or whatever a file-system provider on the class path understands. A property that is not
 * set, or that leads nowhere, is UNAVAILABLE; it is read again at the next operation.
 *
 * <p><b>A mount is a jail.</b> No location and no symbolic link leads out of it: an operation that would leave it fails
 * with ACCESS_DENIED or INVALID_LOCATION, and nothing outside is touched. Links that stay inside are followed. The
 * protection is against locations and against links that are there, not against someone who rearranges links with means
 * of their own while an operation is under way.
 *
 * <p><b>Archives.</b> A zip archive on disk is shared by all providers of the process. It is only read until the last
 * of them is disposed of. Then what was changed is written as a new archive beside the old one, read back, synced, and
 * renamed over it, with the permissions and user attributes of the old one; {@link #close} reports whether that
 * worked. If it did not, the old archive is as it was, nothing is left, and the mount can be opened again. The first
 * change makes the hidden file {@code .storage-archive-NAME} and locks it: other processes that begin to change the
 * archive before the end get IN_USE, and so does this one if it finds the archive changed by someone else. Readers are
 * never disturbed. The next writer removes the file if a process was killed and has left it. A link to an archive
 * stays a link.
 *
 * <p>An archive, or any other file system, that is open in the process already is used as it is and left open; then
 * none of this holds.
 *
 * <p><b>Atomicity.</b> Creating is exclusive. On the default file system a file that replaces another does so
 * atomically, and a folder moves by one rename. Between file systems, and for folders inside archives, content is
 * copied first, forced to the disk, and the source removed last, as far as it is what was copied. While a move is under
 * way, entries whose names begin with {@code .storage-} may exist beside source and target; they are private.
 *
 * <p><b>Open files.</b> Only files and folders are ever opened; a pipe, socket or device has attributes, moves and can
 * be removed. Exclusive use holds within the process, and on the default file system against other processes that ask
 * for locks, whatever else this provider does with the file: what would open it besides is left out or IN_USE. A zip
 * archive takes one writer for each file, and neither removes nor moves what is being written.
 *
 * <p><b>Events</b> report the differences between scans of the storage, made when its watch service says so, or every
 * second where there is none, or where a scan has failed.
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
     * Begins to send the events of a file, or of a folder and everything below it. They are the differences
     * between two scans; what appears and disappears in between is reported as a file, if at all. A rename is a removal
     * and an addition. Links are not entered. A watch ends with SelfRemoved. Who caused a change is not known, so the
     * origin is null.
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

    /** Follows {@code gds.enableContentCache}: {@code true}, or {@code false}, which an empty value means as well. */
    @Override
    public void configure(HashMap<String, String> settings) throws ProviderException {
        cache.configure(settings);
    }

    /** Returns what is known of the content cache, for tests. */
    ContentCache cache() {
        return cache;
    }

    /**
     * Ends all events, and returns when no publisher is delivering any more. Closes the channels that are still open,
     * and the file systems that were opened for mounts and that no other provider uses. What goes wrong is logged.
     */
    @Override
    public void dispose() {
        watcher.dispose();
        channels.dispose();
        mounts.dispose();
    }

    /**
     * Does the same as {@link #dispose}, and reports when a file system cannot be closed, so that what was written to
     * an archive may be lost. Everything else is released all the same; disposal has nothing left to do then.
     *
     * @throws ProviderException with the root of the mount, and with STORAGE_FULL, ACCESS_DENIED or what else it was
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
