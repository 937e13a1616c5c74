package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;

/**
 * The name in a folder that an operation acts on, existing or not. If it is a link, it is the link: links on the way
 * are followed, the last is not.
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

    /** Returns the path without a link on the way: two entries are the same name if these are equal. */
    Path realPath() throws IOException {
        Path parent = path.getParent();
        if (parent == null) {
            return path;
        }
        try {
            return parent.toRealPath().resolve(path.getFileName());
        } catch (FileSystemException e) {
            // There is no way there, which whoever uses the path finds out.
            return path;
        }
    }

    /** Returns what a link leads to, be it a name that nothing has yet; throws if it leads in circles or out. */
    Entry followed() throws IOException, ProviderException {
        return isLink() ? new Entry(location, mount.followLinks(location), mount) : this;
    }

    /** Tells what is here. A link counts as what it leads to, and as a file if it leads nowhere or out of the mount. */
    EntryKind kind() throws IOException {
        BasicFileAttributes own = EntryKind.attributesOf(path, LinkOption.NOFOLLOW_LINKS);
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

    /** Where a file that is open cannot be removed or moved, it must not seem to be. */
    void requireNotPinned() throws ProviderException {
        if (OpenFiles.pinned(path)) {
            throw failure(ErrorCode.IN_USE, "is open, or holds a file that is");
        }
    }

    /** Some file systems create entries below files if nobody stops them. */
    void requireParentFolder() throws IOException, ProviderException {
        Path parent = path.getParent();
        EntryKind kind = parent == null ? EntryKind.FOLDER : EntryKind.of(parent);
        if (kind == EntryKind.MISSING) {
            throw failure(ErrorCode.NOT_FOUND, "has no parent folder");
        }
        if (kind == EntryKind.FILE) {
            throw failure(ErrorCode.NOT_A_FOLDER, "has a file for a parent");
        }
    }

    ProviderException failure(ErrorCode code, String what) {
        return new ProviderException(code, location, location + " " + what);
    }
}
