package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;

/** What a location leads to, links followed: a file or folder that was there when it was looked at. */
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
            throw new ProviderException(ErrorCode.NOT_FOUND, location, location + " does not exist");
        }
        return new Found(location, path, attributes);
    }

    FileSystem fileSystem() {
        return path.getFileSystem();
    }

    /** The path to open it by: of a folder, one that leads nowhere if something else has taken its name. */
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

    /** Tells whether it is a file or folder. Opening a pipe waits for its other end, and a device does as it likes. */
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
        return new ProviderException(code, location, location + " " + what);
    }
}
