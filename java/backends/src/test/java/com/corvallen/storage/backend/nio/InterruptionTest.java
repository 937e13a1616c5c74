package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.TimeUnit;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;

/** An interrupted thread gives up long work, leaves nothing incomplete, and stays interrupted. */
class InterruptionTest extends NioTestCase {
    private NioStorage other;

    InterruptionTest() {
        super(NioStorage::ofFolder);
    }

    @AfterEach
    void close() throws Exception {
        Thread.interrupted();
        if (other != null) {
            other.tearDown();
        }
    }

    /** Opens a storage that files cannot be renamed into. */
    private void open(StorageUnderTest.Opener opener) throws Exception {
        other = (NioStorage) opener.open();
    }

    private StorageURI tree() throws Exception {
        StorageURI a = folder("a");
        folder("a", "sub");
        file("1", "a", "file");
        file("2", "a", "sub", "file");
        return a;
    }

    private void assertTree() throws Exception {
        assertFile("1", at("a", "file"));
        assertFile("2", at("a", "sub", "file"));
    }

    private static void assertInterrupted(Executable operation) {
        Thread.currentThread().interrupt();
        ProviderException failure = assertThrows(ProviderException.class, operation);
        assertTrue(Thread.interrupted(), "the thread does not know any more that it was interrupted");
        assertEquals(ErrorCode.UNAVAILABLE, failure.getErrorCode(), failure.getMessage());
        assertTrue(failure.getMessage().contains("interrupted"), failure.getMessage());
    }

    @Test
    void removalIsGivenUp() throws Exception {
        StorageURI a = tree();
        assertInterrupted(() -> provider.removeFolderRecursively(a));
        assertTree();
    }

    @Test
    void moveOfAFolderIsGivenUp() throws Exception {
        for (StorageUnderTest.Opener opener :
                new StorageUnderTest.Opener[] {OtherDisk::open, NioStorage::ofMemory, NioStorage::ofArchive}) {
            open(opener);
            StorageURI a = tree();
            assertInterrupted(() -> provider.moveFolder(a, other.at("b"), /* replace= */ false));
            assertTree();
            assertEquals(0, other.countEntries(other.at()));
            provider.removeFolderRecursively(a);
            other.tearDown();
            other = null;
        }
    }

    @Test
    void folderThatWasToBeReplacedIsThereAgain() throws Exception {
        open(OtherDisk::open);
        StorageURI a = tree();
        other.provider().createFolder(other.at("b"));
        other.write(other.at("b", "old"), "old");
        assertInterrupted(() -> provider.moveFolder(a, other.at("b"), /* replace= */ true));
        assertTree();
        assertEquals("old", other.read(other.at("b", "old")));
        assertEquals(1, other.countEntries(other.at()));
    }

    @Test
    void moveOfAFileIsGivenUp() throws Exception {
        open(OtherDisk::open);
        StorageURI a = file("x", "a");
        assertInterrupted(() -> provider.moveFile(a, other.at("b"), /* replace= */ false));
        assertFile("x", a);
        assertEquals(0, other.countEntries(other.at()));
    }

    @Test
    void moveOfALargeFileIsGivenUpHalfWay() throws Exception {
        open(OtherDisk::open);
        StorageURI a = file("", "a");
        Files.write(path("a"), new byte[64 << 20]);
        CompletableFuture<ProviderException> end = new CompletableFuture<>();
        Thread mover = new Thread(() -> end.complete(failureOfMove(a)));
        mover.start();
        while (other.countEntries(other.at()) == 0 && !end.isDone()) {
            Thread.onSpinWait();
        }
        mover.interrupt();
        ProviderException failure = end.get(60, TimeUnit.SECONDS);
        mover.join();
        // If the copy was faster than this thread, it has arrived.
        int arrived = failure == null ? 1 : 0;
        assertEquals(arrived, other.countEntries(other.at()));
        assertEquals(1 - arrived, storage.countEntries(at()));
    }

    private ProviderException failureOfMove(StorageURI a) {
        try {
            provider.moveFile(a, other.at("b"), /* replace= */ false);
            return null;
        } catch (ProviderException e) {
            assertTrue(e.getMessage().contains("interrupted"), e.getMessage());
            return e;
        }
    }
}
