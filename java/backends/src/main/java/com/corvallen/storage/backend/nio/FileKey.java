package com.corvallen.storage.backend.nio;

import java.nio.file.FileSystem;
import java.nio.file.FileSystems;
import java.util.Map;

/**
 * The extended attribute {@code basic:fileKey}, where there is one: text that is the same for two locations, whatever
 * their mounts, if and only if they lead to the same file or folder. It means nothing once the process has ended.
 */
final class FileKey {
    private FileKey() {}

    /** Puts the key of what was found among the attributes. */
    static void readInto(Found found, Map<String, String> values) {
        Object key = found.attributes.fileKey();
        if (key != null) {
            values.put("basic:fileKey", ownerOf(found.fileSystem()) + key);
        }
    }

    /** Keys are those of one file system, so that of any but the default one goes with them. */
    private static String ownerOf(FileSystem fileSystem) {
        boolean isDefault = fileSystem == FileSystems.getDefault();
        return isDefault ? "" : Integer.toHexString(System.identityHashCode(fileSystem)) + ":";
    }
}
