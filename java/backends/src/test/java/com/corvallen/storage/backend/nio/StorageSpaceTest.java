package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertSame;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.corvallen.storage.provider.ProviderStorageInfo;
import java.io.IOException;
import java.nio.file.FileStore;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.FileAttributeView;
import java.nio.file.attribute.FileStoreAttributeView;
import org.junit.jupiter.api.Test;

class StorageSpaceTest {
    @Test
    void diskIsCountedAsAWhole() throws Exception {
        NioStorage storage = NioStorage.ofFolder();
        try {
            FileStore store = Files.getFileStore(storage.path());
            ProviderStorageInfo info = storage.provider().getProviderStorageInfo(storage.root());
            assertEquals(store.getTotalSpace(), info.getStorageCapacity());
            long usable = store.getUsableSpace();
            assertEquals(usable, info.getStorageCapacity() - info.getSpaceOccupied(), usable / 10.0);
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

    /** A disk of 100 bytes: 60 are unused, 20 of these are open to everyone. */
    private static final class Disk extends FileStore {
        @Override
        public String name() {
            return "disk";
        }

        @Override
        public String type() {
            return "test";
        }

        @Override
        public boolean isReadOnly() {
            return false;
        }

        @Override
        public long getTotalSpace() {
            return 100;
        }

        @Override
        public long getUsableSpace() {
            return 20;
        }

        @Override
        public long getUnallocatedSpace() {
            return 60;
        }

        @Override
        public boolean supportsFileAttributeView(Class<? extends FileAttributeView> type) {
            return false;
        }

        @Override
        public boolean supportsFileAttributeView(String name) {
            return false;
        }

        @Override
        public <V extends FileStoreAttributeView> V getFileStoreAttributeView(Class<V> type) {
            return null;
        }

        @Override
        public Object getAttribute(String attribute) {
            throw new UnsupportedOperationException();
        }
    }

    @Test
    void roomForTheSuperuserCountsAsOccupied() throws Exception {
        assertEquals(new ProviderStorageInfo(100, 80), StorageSpace.of(Path.of("any"), Disk::new));
    }

    @Test
    void diskWithoutAMountPointIsCountedAllTheSame() throws Exception {
        Path here = Path.of("").toAbsolutePath();
        FileStore store = Files.getFileStore(here);
        ProviderStorageInfo info = StorageSpace.of(here, () -> {
            throw new IOException("Mount point not found");
        });
        assertEquals(store.getTotalSpace(), info.getStorageCapacity());
        long usable = store.getUsableSpace();
        assertEquals(usable, info.getStorageCapacity() - info.getSpaceOccupied(), usable / 10.0);
    }

    @Test
    void whatIsNotThereHasNoSpace() {
        IOException failure = new IOException("Mount point not found");
        assertSame(failure, assertThrows(IOException.class, () -> StorageSpace.of(Path.of("/nowhere/at/all"), () -> {
            throw failure;
        })));
    }
}
