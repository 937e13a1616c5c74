package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.ProviderStorageInfo;
import java.io.File;
import java.io.IOException;
import java.nio.file.FileStore;
import java.nio.file.FileSystems;
import java.nio.file.Files;
import java.nio.file.Path;

/**
 * Reads how much the storage of a file or folder holds and could hold. What is left is what this process can still
 * write: room that disks reserve for the superuser counts as occupied for everyone else.
 */
final class StorageSpace {
    private StorageSpace() {}

    static ProviderStorageInfo of(Found found) throws IOException, ProviderException {
        return of(found.path, () -> Files.getFileStore(found.path));
    }

    static ProviderStorageInfo of(Path path, Failures.Query<FileStore> query) throws IOException, ProviderException {
        FileStore store;
        try {
            store = query.run();
        } catch (IOException e) {
            return withoutStore(path, e);
        }
        long total = store.getTotalSpace();
        if (FileSystemTraits.growsOnItsDisk(path.getFileSystem())) {
            return new ProviderStorageInfo(sum(total, store.getUsableSpace()), total);
        }
        return info(total, store.getUsableSpace());
    }

    /**
     * In a chroot the platform finds no mount point. The size by path then still works, but gives no reason if it
     * fails.
     */
    private static ProviderStorageInfo withoutStore(Path path, IOException why) throws IOException {
        if (path.getFileSystem().equals(FileSystems.getDefault())) {
            File file = path.toFile();
            long total = file.getTotalSpace();
            if (total > 0) {
                return info(total, file.getUsableSpace());
            }
        }
        throw why;
    }

    private static ProviderStorageInfo info(long total, long usable) {
        return new ProviderStorageInfo(total, Math.max(0, total - usable));
    }

    private static long sum(long size, long room) {
        return room > Long.MAX_VALUE - size ? Long.MAX_VALUE : size + room;
    }
}
