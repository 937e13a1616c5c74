package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.Future;
import java.util.concurrent.atomic.AtomicBoolean;
import org.junit.jupiter.api.Test;

/** What a move guarantees on a disk beyond the contract. */
class MoveFileOnDiskTest extends NioTestCase {
    private static final int LENGTH = 100_000;

    MoveFileOnDiskTest() {
        super(NioStorage::ofFolder);
    }

    @Test
    void readerSeesTheOldFileOrTheNewOneAtAnyTime() throws Exception {
        StorageURI target = file("0".repeat(LENGTH), "target");
        AtomicBoolean done = new AtomicBoolean();
        ExecutorService reader = Executors.newSingleThreadExecutor();
        Future<Integer> reads = reader.submit(() -> readUntil(done, target));
        for (int i = 1; i < 200; i++) {
            provider.moveFile(file(Integer.toString(i % 10).repeat(LENGTH), "new"), target, /* replace= */ true);
        }
        done.set(true);
        assertTrue(reads.get() > 0);
        reader.shutdown();
    }

    /** Fails if the file is ever missing, or if a read mixes two generations. */
    private int readUntil(AtomicBoolean done, StorageURI target) throws Exception {
        int reads = 0;
        do {
            String content = storage.read(target);
            assertEquals(LENGTH, content.length());
            assertEquals(LENGTH, content.chars().filter(c -> c == content.charAt(0)).count());
            reads++;
        } while (!done.get());
        return reads;
    }

    @Test
    void twoNamesOfOneFileBecomeOne() throws Exception {
        StorageURI a = file("x", "a");
        Files.createLink(path("b"), path("a"));
        assertFails(ErrorCode.ALREADY_EXISTS, at("b"), () -> provider.moveFile(a, at("b"), /* replace= */ false));
        provider.moveFile(a, at("b"), /* replace= */ true);
        assertMissing(a);
        assertFile("x", at("b"));
    }

    @Test
    void nameThatIsTooLongIsNoLocation() throws Exception {
        StorageURI a = file("x", "a");
        StorageURI tooLong = at("n".repeat(300));
        assertFails(ErrorCode.INVALID_LOCATION, tooLong, () -> provider.moveFile(a, tooLong, false));
        assertFails(ErrorCode.INVALID_LOCATION, tooLong, () -> provider.createFile(tooLong));
        assertFile("x", a);
    }

    @Test
    void deepTreeIsRemoved() throws Exception {
        StorageURI top = folder("top");
        StorageURI location = top;
        for (int i = 0; i < 100; i++) {
            location = location.resolve("d");
            provider.createFolder(location);
        }
        provider.removeFolderRecursively(top);
        assertMissing(top);
    }
}
