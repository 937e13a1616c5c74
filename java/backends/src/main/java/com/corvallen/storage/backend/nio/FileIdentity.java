package com.corvallen.storage.backend.nio;

import java.nio.file.attribute.BasicFileAttributes;
import java.util.Objects;

/**
 * Compares attributes to tell whether a file is the same file, and whether it is unchanged. Systems reuse the key of a
 * removed file, so the creation time counts too; where there is none, Java gives the time of the last modification.
 */
final class FileIdentity {
    private FileIdentity() {}

    /** Tells whether both are the same file or folder, as far as the file system can tell. */
    static boolean isSame(BasicFileAttributes one, BasicFileAttributes other) {
        return Objects.equals(one.fileKey(), other.fileKey()) && one.creationTime().equals(other.creationTime());
    }

    /** Tells whether both are the same file with the same size and time. */
    static boolean isUnchanged(BasicFileAttributes one, BasicFileAttributes other) {
        return isSame(one, other)
                && one.size() == other.size()
                && one.lastModifiedTime().equals(other.lastModifiedTime());
    }
}
