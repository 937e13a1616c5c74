package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;

/** Reads and sets the basic attributes. */
final class Attributes {
    private Attributes() {}

    static FileAttributes ofFile(Found found) throws ProviderException {
        found.requireFile();
        return new FileAttributes(found.attributes.size(), lastModified(found), isWritable(found));
    }

    static FolderAttributes ofFolder(Found found) throws ProviderException {
        found.requireFolder();
        return new FolderAttributes(lastModified(found), isWritable(found));
    }

    /** Runs as a brief use, because the platform opens a file to set its time. */
    static void setLastModified(Found found, long millis) throws IOException, ProviderException {
        found.requireOpenable();
        if (!FileUses.briefly(found, () -> set(found, millis)) && !Times.setUnopened(found.path, millis)) {
            throw found.failure(ErrorCode.IN_USE, "is open exclusively, so this time cannot be set");
        }
    }

    /** An archive has no entry for its root, and reports the root as missing. */
    private static void set(Found found, long millis) throws IOException {
        try {
            Times.set(found.path, found.attributes.lastModifiedTime(), millis);
        } catch (NoSuchFileException e) {
            if (Files.exists(found.path)) {
                throw new UnsupportedOperationException("the root of this storage has no time that can be set");
            }
            throw e;
        }
    }

    private static long lastModified(Found found) {
        return Times.millisOf(found.attributes.lastModifiedTime());
    }

    /** Asks the system: permissions alone do not cover read-only disks or the superuser. */
    private static boolean isWritable(Found found) {
        return Files.isWritable(found.path);
    }
}
