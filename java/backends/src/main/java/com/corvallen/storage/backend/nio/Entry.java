package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.AccessDeniedException;
import java.nio.file.FileSystem;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;

/**
 * The name in a folder that an operation acts on, whether or not it exists. Links on the way are followed, but not the
 * last name: if it is a link, the operation acts on the link.
 */
final class Entry {
    final StorageURI location;
    final Path path;
    private final Mount mount;

    Entry(StorageURI location, Path path, Mount mount) {
        this.location = location;
        this.path = path;
        this.mount = mount;
    }

    FileSystem fileSystem() {
        return path.getFileSystem();
    }

    boolean isRoot() {
        return path.equals(mount.root());
    }

    boolean isLink() {
        return Files.isSymbolicLink(path);
    }

    /** Returns the path without links on the way. Two entries are the same name if these paths are equal. */
    Path realPath() throws IOException {
        Path parent = path.getParent();
        if (parent == null) {
            return path;
        }
        try {
            return parent.toRealPath().resolve(path.getFileName());
        } catch (FileSystemException e) {
            // The parent cannot be reached; using the path reports that.
            return path;
        }
    }

    /**
     * Returns the entry that a link leads to, even if nothing is there yet. Throws if the link leads in circles or out.
     */
    Entry followed() throws IOException, ProviderException {
        return isLink() ? new Entry(location, mount.followLinks(location), mount) : this;
    }

    /** Tells what is here. A link counts as its target, or as a file if it leads nowhere or out of the mount. */
    EntryKind kind() throws IOException {
        BasicFileAttributes own = EntryKind.ownAttributesOf(path);
        if (own == null || !own.isSymbolicLink()) {
            return EntryKind.of(own);
        }
        return mount.leadsToFolder(location) ? EntryKind.FOLDER : EntryKind.FILE;
    }

    void requireFile() throws IOException, ProviderException {
        EntryKind kind = requireExisting();
        if (kind != EntryKind.FILE) {
            throw failure(ErrorCode.NOT_A_FILE, "is a folder");
        }
    }

    void requireFolder() throws IOException, ProviderException {
        EntryKind kind = requireExisting();
        if (kind != EntryKind.FOLDER) {
            throw failure(ErrorCode.NOT_A_FOLDER, "is a file");
        }
    }

    private EntryKind requireExisting() throws IOException, ProviderException {
        EntryKind kind = kind();
        if (kind == EntryKind.MISSING) {
            throw failure(ErrorCode.NOT_FOUND, "does not exist");
        }
        return kind;
    }

    void requireNotRoot() throws ProviderException {
        if (isRoot()) {
            throw failure(ErrorCode.ACCESS_DENIED, "is the root of a mount");
        }
    }

    /** Refuses to remove or move an open file where the file system would only seem to do it. */
    void requireNotPinned() throws ProviderException {
        if (FileUses.pinned(path)) {
            throw failure(ErrorCode.IN_USE, "is open, or contains an open file");
        }
    }

    /** Throws early if the source of a move could not be removed after everything has been copied. */
    void requireMovable() throws IOException {
        Path parent = path.getParent();
        if (fileSystem().isReadOnly() || parent != null && !Files.isWritable(parent)) {
            throw new AccessDeniedException(path.toString(), null, "cannot be removed from where it is");
        }
    }

    /** Checked because some file systems would create entries below files. */
    void requireParentFolder() throws IOException, ProviderException {
        Path parent = path.getParent();
        EntryKind kind = parent == null ? EntryKind.FOLDER : EntryKind.of(parent);
        if (kind == EntryKind.MISSING) {
            throw failure(ErrorCode.NOT_FOUND, "has no parent folder");
        }
        if (kind == EntryKind.FILE) {
            throw failure(ErrorCode.NOT_A_FOLDER, "has a file as its parent");
        }
    }

    ProviderException failure(ErrorCode code, String what) {
        return Failures.of(code, location, what);
    }
}
