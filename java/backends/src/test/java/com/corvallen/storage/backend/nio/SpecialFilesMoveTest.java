package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import java.nio.channels.FileChannel;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.BasicFileAttributes;
import org.junit.jupiter.api.Assumptions;
import org.junit.jupiter.api.Test;

/** Pipes are moved as names and never opened, which would block until someone opens the other end. */
class SpecialFilesMoveTest extends TwoDisksCase {
    private static void assertPipe(Path path) throws Exception {
        assertTrue(Files.readAttributes(path, BasicFileAttributes.class).isOther(), () -> path + " is no pipe");
    }

    @Test
    void pipeMovesWithinADiskAndIsRemoved() throws Exception {
        StorageURI pipe = pipe("pipe");
        provider.moveFile(pipe, at("moved"), /* replace= */ false);
        assertPipe(path("moved"));
        assertMissing(pipe);
        provider.moveFile(at("moved"), at("again"), /* replace= */ true);
        assertPipe(path("again"));
        provider.removeFile(at("again"));
        assertMissing(at("again"));
    }

    @Test
    void folderWithAPipeMovesWithinADiskAndIsRemoved() throws Exception {
        StorageURI folder = folder("a");
        pipe("a", "pipe");
        provider.moveFolder(folder, at("b"), /* replace= */ false);
        assertPipe(path("b", "pipe"));
        provider.removeFolderRecursively(at("b"));
        assertMissing(at("b"));
    }

    @Test
    void pipeDoesNotMoveToAnotherDisk() throws Exception {
        StorageURI pipe = pipe("pipe");
        for (boolean replace : new boolean[] {false, true}) {
            assertFails(ErrorCode.NOT_SUPPORTED, pipe, () -> provider.moveFile(pipe, disk.at("pipe"), replace));
        }
        assertPipe(path("pipe"));
        assertEquals(0, disk.countEntries(disk.at()));
    }

    @Test
    void folderWithAPipeDoesNotMoveToAnotherDiskAndStaysWhole() throws Exception {
        StorageURI folder = folder("a");
        for (int i = 0; i < 20; i++) {
            file("x", "a", "file" + i);
        }
        folder("a", "sub");
        pipe("a", "sub", "pipe");
        disk.provider().createFolder(disk.at("b"));
        disk.write(disk.at("b", "old"), "old");
        for (String target : new String[] {"b", "free"}) {
            assertFails(ErrorCode.NOT_SUPPORTED, folder, () -> provider.moveFolder(folder, disk.at(target), true));
        }
        assertPipe(path("a", "sub", "pipe"));
        assertEquals(21, storage.countEntries(folder));
        assertEquals("old", disk.read(disk.at("b", "old")));
        assertEquals(1, disk.countEntries(disk.at()));
    }

    /** Linux makes the content of such files as they are read. */
    @Test
    void fileThatHidesItsSizeIsCopiedWhole() throws Exception {
        Path made = Path.of("/proc/self/cmdline");
        Assumptions.assumeTrue(Files.exists(made) && Files.size(made) == 0);
        try (FileChannel from = FileChannel.open(made);
                FileChannel to = FileChannel.open(
                        path("copy"), StandardOpenOption.CREATE_NEW, StandardOpenOption.WRITE)) {
            ByteCopy.copy(from, to);
        }
        assertArrayEquals(Files.readAllBytes(made), Files.readAllBytes(path("copy")));
    }
}
