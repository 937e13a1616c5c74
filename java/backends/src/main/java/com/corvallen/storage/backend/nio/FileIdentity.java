package com.corvallen.storage.backend.nio;

import java.nio.file.attribute.BasicFileAttributes;
import java.util.Objects;

/**
 * Tells from attributes whether a file is the same, and holds the same. Systems give the key of a removed file to the
 * next one, so the time of creation counts as well; where there is none, it is that of the last modification.
 */
final class FileIdentity {
    private FileIdentity() {}

    /** Tells whether it is the same file or folder, as far as the file system can tell one from another. */
    static boolean isSame(BasicFileAttributes one, BasicFileAttributes other) {
        return Objects.equals(one.fileKey(), other.fileKey()) && one.creationTime().equals(other.creationTime());
    }

    /** Tells whether it is the same file, and as it was. */
    static boolean isUnchanged(BasicFileAttributes one, BasicFileAttributes other) {
        return isSame(one, other)
                && one.size() == other.size()
                && one.lastModifiedTime().equals(other.lastModifiedTime());
    }
}
