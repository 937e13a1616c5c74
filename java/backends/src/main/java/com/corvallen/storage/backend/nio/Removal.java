package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.Files;

/** Removes files and folders. What is a link is removed itself, and what it leads to stays. */
final class Removal {
    private Removal() {}

    static void removeFile(Entry entry) throws IOException, ProviderException {
        entry.requireFile();
        entry.requireNotPinned();
        Files.delete(entry.path);
    }

    static void removeFolder(Entry entry) throws IOException, ProviderException {
        entry.requireFolder();
        entry.requireNotRoot();
        Files.delete(entry.path);
    }

    static void removeFolderRecursively(Entry entry) throws IOException, ProviderException {
        entry.requireFolder();
        entry.requireNotRoot();
        entry.requireNotPinned();
        TreeDeleter.delete(entry.path);
    }
}
