package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;

/** The target of a location, links followed: something that existed when it was examined. */
final class Found {
    final StorageURI location;
    final Path path;
    final BasicFileAttributes attributes;

    Found(StorageURI location, Path path, BasicFileAttributes attributes) {
        this.location = location;
        this.path = path;
        this.attributes = attributes;
    }

    static Found at(StorageURI location, Mount mount) throws IOException, ProviderException {
        Path path = mount.follow(location);
        BasicFileAttributes attributes = EntryKind.attributesOf(path);
        if (attributes == null) {
            throw Failures.of(ErrorCode.NOT_FOUND, location, "does not exist");
        }
        return new Found(location, path, attributes);
    }

    FileSystem fileSystem() {
        return path.getFileSystem();
    }

    /** The path to open: for a folder, one that fails if something else has taken the name. */
    Path openedPath() {
        return attributes.isDirectory() ? Names.asFolder(path) : path;
    }

    Found requireFile() throws ProviderException {
        if (attributes.isDirectory()) {
            throw failure(ErrorCode.NOT_A_FILE, "is a folder");
        }
        return this;
    }

    Found requireFolder() throws ProviderException {
        if (!attributes.isDirectory()) {
            throw failure(ErrorCode.NOT_A_FOLDER, "is a file");
        }
        return this;
    }

    /**
     * Tells whether it is a file or folder. Opening a pipe waits for the other end, and opening a device has side
     * effects.
     */
    boolean isOpenable() {
        return !attributes.isOther();
    }

    Found requireOpenable() throws ProviderException {
        if (!isOpenable()) {
            throw failure(ErrorCode.NOT_SUPPORTED, "is neither a file nor a folder");
        }
        return this;
    }

    ProviderException failure(ErrorCode code, String what) {
        return Failures.of(code, location, what);
    }
}
