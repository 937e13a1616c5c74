package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.file.FileSystem;
import java.nio.file.OpenOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.FileAttribute;
import java.nio.file.attribute.PosixFilePermissions;
import java.util.Set;

/**
 * Keeps what this back end makes closed to others from the first moment. The final permissions are set when the content
 * is complete.
 */
final class Privacy {
    private static final FileAttribute<?>[] NONE = {};

    private static final Set<OpenOption> CREATE =
            Set.of(StandardOpenOption.READ, StandardOpenOption.WRITE, StandardOpenOption.CREATE_NEW);

    private Privacy() {}

    /** Creates a file on disk; throws FileAlreadyExistsException if anything has the name, even a link. */
    static FileChannel createFile(Path path) throws IOException {
        return FileChannel.open(path, CREATE, ofFile(path));
    }

    /** Returns the attributes to create a private file with. */
    static FileAttribute<?>[] ofFile(Path path) {
        return of(path, "rw-------");
    }

    /** Returns the attributes to create a private folder with. */
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
