package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ProviderStorageInfo;
import java.nio.file.FileStore;
import java.nio.file.Files;
import java.nio.file.Path;
import org.junit.jupiter.api.Test;

class StorageSpaceTest {
    @Test
    void diskIsCountedAsAWhole() throws Exception {
        NioStorage storage = NioStorage.ofFolder();
        try {
            FileStore store = Files.getFileStore(storage.path());
            ProviderStorageInfo info = storage.provider().getProviderStorageInfo(storage.root());
            assertEquals(store.getTotalSpace(), info.getStorageCapacity());
            assertTrue(info.getSpaceOccupied() > 0, info::toString);
        } finally {
            storage.tearDown();
        }
    }

    @Test
    void archiveOccupiesItsSizeAndMayGrow() throws Exception {
        NioStorage storage = NioStorage.ofArchive();
        try {
            Path archive = Path.of(storage.path().getFileSystem().toString());
            long room = Files.getFileStore(archive).getUsableSpace();
            ProviderStorageInfo info = storage.provider().getProviderStorageInfo(storage.root());
            assertEquals(Files.size(archive), info.getSpaceOccupied());
            assertEquals(room, info.getStorageCapacity(), room / 10.0);
        } finally {
            storage.tearDown();
        }
    }
}
