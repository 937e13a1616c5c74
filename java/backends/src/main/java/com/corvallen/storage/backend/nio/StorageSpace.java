package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderStorageInfo;
import java.io.IOException;
import java.nio.file.FileStore;
import java.nio.file.Files;

/** Reads how much the storage behind a file or folder holds and could hold. */
final class StorageSpace {
    private StorageSpace() {}

    static ProviderStorageInfo of(Found found) throws IOException {
        FileStore store = Files.getFileStore(found.path);
        long total = store.getTotalSpace();
        long unallocated = store.getUnallocatedSpace();
        if (FileSystemTraits.growsOnItsDisk(found.fileSystem())) {
            return new ProviderStorageInfo(sum(total, store.getUsableSpace()), total);
        }
        return new ProviderStorageInfo(total, Math.max(0, total - unallocated));
    }

    private static long sum(long size, long room) {
        return room > Long.MAX_VALUE - size ? Long.MAX_VALUE : size + room;
    }
}
