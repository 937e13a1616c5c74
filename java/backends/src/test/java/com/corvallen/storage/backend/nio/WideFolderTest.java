package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.concurrent.TimeUnit;
import org.junit.jupiter.api.Test;

/** Removes a folder with more entries than fit into memory. */
class WideFolderTest extends NioTestCase {
    private static final int ENTRIES = Integer.parseInt(System.getenv().getOrDefault("WIDE_ENTRIES", "30000"));

    /** Each name has that many bytes. */
    private static final int LENGTH = 240;

    private static final int MEGABYTES = 8;

    WideFolderTest() {
        super(NioStorage::ofDefaultFileSystem);
    }

    /** Makes links to one file: real disks take long to make so many files. */
    private StorageURI wide() throws Exception {
        Path top = path("top");
        Files.createDirectory(top);
        Path last = null;
        String name = "n".repeat(LENGTH);
        for (int i = 0; i < ENTRIES; i++) {
            if (i % 30_000 == 0) {
                last = Files.createFile(top.resolve(name + i));
            } else {
                Files.createLink(top.resolve(name + i), last);
            }
        }
        return at("top");
    }

    @Test
    void memoryDoesNotLimitHowManyEntriesAreRemoved() throws Exception {
        StorageURI top = wide();
        Process process = SmallHeap.removing(top, MEGABYTES);
        assertTrue(process.waitFor(60, TimeUnit.SECONDS));
        assertEquals(0, process.exitValue());
        assertMissing(top);
    }
}
