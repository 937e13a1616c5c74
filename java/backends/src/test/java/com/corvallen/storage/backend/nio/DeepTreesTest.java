package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** Trees deeper than the stack, the number of descriptors, and the longest path. */
class DeepTreesTest extends NioTestCase {
    private static final int LEVELS = Integer.parseInt(System.getenv().getOrDefault("DEEP_LEVELS", "5000"));

    /** Less than half of the longest path, so that two such parts fit into one path. */
    private static final int PART = 1800;

    private static final int DEEP = 300;

    private NioStorage disk;

    /** Real disks take long to remove so many folders. */
    DeepTreesTest() {
        super(OtherDisk::open);
    }

    @AfterEach
    void close() throws Exception {
        if (disk != null) {
            disk.tearDown();
        }
    }

    /** Makes a folder with many levels below it, from the lowest up. Each part is as deep as a path allows. */
    private static StorageURI deep(NioStorage in, String name, int levels, String level) throws Exception {
        Path top = Files.createDirectory(in.path(name));
        write(top.resolve("lowest"), "x");
        int part = PART / (level.length() + 1);
        for (int done = 0; done < levels; done += part) {
            Path above = Files.createDirectory(in.path("above"));
            String path = (level + "/").repeat(Math.min(part, levels - done) - 1);
            Path lowest = Files.createDirectories(above.resolve(path));
            Files.move(top, lowest.resolve(level), StandardCopyOption.ATOMIC_MOVE);
            Files.move(above, top, StandardCopyOption.ATOMIC_MOVE);
        }
        return in.at(name);
    }

    private StorageURI deep(String name, int levels) throws Exception {
        return deep(nio(), name, levels, "d");
    }

    private static String lowest(Path top) throws Exception {
        return read(top.resolve("d/".repeat(DEEP)).resolve("lowest"));
    }

    @Test
    void deepTreeIsRemoved() throws Exception {
        StorageURI top = deep("top", LEVELS);
        file("sibling", "sibling");
        link("../sibling", "top", "link");
        provider.removeFolderRecursively(top);
        assertMissing(top);
        assertFile("sibling", at("sibling"));
        assertEquals(1, storage.countEntries(at()));
    }

    @Test
    void deepTreesBesideEachOtherAreRemoved() throws Exception {
        StorageURI top = folder("top");
        for (int i = 0; i < 3; i++) {
            deep("tree" + i, 200 * (i + 1));
            Files.move(path("tree" + i), path("top", "tree" + i));
        }
        provider.removeFolderRecursively(top);
        assertEquals(0, storage.countEntries(at()));
    }

    @Test
    void deepTreeMovesWithinADisk() throws Exception {
        deep("top", LEVELS / 10);
        provider.moveFolder(at("top"), at("moved"), /* replace= */ false);
        assertMissing(at("top"));
        provider.removeFolderRecursively(at("moved"));
        assertEquals(0, storage.countEntries(at()));
    }

    @Test
    void deepTreeMovesToAnotherDisk() throws Exception {
        disk = NioStorage.ofFolder();
        StorageURI top = deep(disk, "top", DEEP, "d");
        provider.moveFolder(top, at("top"), /* replace= */ false);
        assertMissing(top);
        assertEquals("x", lowest(path("top")));
    }

    @Test
    void treeDeeperThanTheLongestPathStaysWholeAndLeavesNothing() throws Exception {
        disk = NioStorage.ofMemory();
        String level = "d".repeat(200);
        StorageURI top = deep(nio(), "top", 50, level);
        ProviderException failure = assertThrows(
                ProviderException.class, () -> provider.moveFolder(top, disk.at("top"), /* replace= */ false));
        assertEquals(ErrorCode.INVALID_LOCATION, failure.getErrorCode());
        assertEquals(0, disk.countEntries(disk.at()));
        assertTrue(Files.isDirectory(path("top").resolve((level + "/").repeat(15))));
    }

    @Test
    void deepTreeInMemoryMovesToADiskAndBack() throws Exception {
        disk = NioStorage.ofMemory();
        deep("top", DEEP);
        provider.moveFolder(at("top"), disk.at("top"), /* replace= */ false);
        assertMissing(at("top"));
        provider.moveFolder(disk.at("top"), at("back"), /* replace= */ false);
        assertEquals("x", lowest(path("back")));
        assertFalse(Files.exists(disk.path("top")));
    }
}
