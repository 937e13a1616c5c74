package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.FileSystems;
import java.nio.file.Path;

/** A tree that locations are resolved in: the whole default file system, or a mount that nothing leads out of. */
final class Mount implements AutoCloseable {
    private final Path root;

    /** Null for the default file system, where any path may be named. */
    private final Jail jail;

    private final SharedFileSystems.Lease lease;

    private Mount(Path root, Jail jail, SharedFileSystems.Lease lease) {
        this.root = root;
        this.jail = jail;
        this.lease = lease;
    }

    static Mount ofDefaultFileSystem() {
        return new Mount(FileSystems.getDefault().getRootDirectories().iterator().next(), null, null);
    }

    static Mount jailed(SharedFileSystems.Lease lease) throws IOException {
        Path real = lease.root().toRealPath();
        return new Mount(real, new Jail(real, lease.root().toAbsolutePath()), lease);
    }

    Path root() {
        return root;
    }

    boolean isOpen() {
        return root.getFileSystem().isOpen();
    }

    /** Called before each change below the root. Throws InUseException if another writer is at work. */
    void beginWriting() throws IOException {
        if (lease != null) {
            lease.beginWriting();
        }
    }

    /**
     * Returns the path that a location leads to. In a mount, its links are resolved; elsewhere the system follows them.
     */
    Path follow(StorageURI location) throws IOException, ProviderException {
        Path path = pathOf(location);
        return jail == null ? path : jail.follow(path);
    }

    /** Returns the path that a location leads to with all links resolved, even if nothing is there yet. */
    Path followLinks(StorageURI location) throws IOException, ProviderException {
        Path path = pathOf(location);
        if (jail == null && EntryKind.of(path) != EntryKind.MISSING) {
            return path.toRealPath();
        }
        return (jail == null ? new Jail(root, root) : jail).follow(path);
    }

    /** Returns what an operation on the name itself acts on. */
    Entry entry(StorageURI location) throws IOException, ProviderException {
        Path path = pathOf(location);
        return new Entry(location, jail == null ? path : jail.followParent(path), this);
    }

    /** Tells whether a link counts as a folder. A link that cannot be followed counts as a file. */
    boolean leadsToFolder(StorageURI link) {
        try {
            return EntryKind.of(follow(link)) == EntryKind.FOLDER;
        } catch (IOException | RuntimeException | ProviderException e) {
            return false;
        }
    }

    private Path pathOf(StorageURI location) throws ProviderException {
        return Names.below(root, location.getSegments());
    }

    @Override
    public void close() throws IOException {
        if (lease != null) {
            lease.close();
        }
    }
}
