package com.corvallen.storage.backend.nio;

import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.attribute.FileAttribute;
import java.nio.file.attribute.PosixFilePermissions;

/**
 * What this back end makes for itself is closed to others from its first moment. It gets the permissions it shall have
 * when everything is in it.
 */
final class Privacy {
    private static final FileAttribute<?>[] NONE = {};

    private Privacy() {}

    /** Returns what a new file is created with. */
    static FileAttribute<?>[] ofFile(Path path) {
        return of(path, "rw-------");
    }

    /** Returns what a new folder is created with. */
    static FileAttribute<?>[] ofFolder(Path path) {
        return of(path, "rwx------");
    }

    /** Tells whether files have permissions here. */
    static boolean isKnown(FileSystem system) {
        return system.supportedFileAttributeViews().contains("posix");
    }

    private static FileAttribute<?>[] of(Path path, String permissions) {
        if (!isKnown(path.getFileSystem())) {
            return NONE;
        }
        return new FileAttribute<?>[] {
            PosixFilePermissions.asFileAttribute(PosixFilePermissions.fromString(permissions))
        };
    }
}
