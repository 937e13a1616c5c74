package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.PosixFilePermissions;
import java.nio.file.attribute.UserDefinedFileAttributeView;
import java.util.Queue;
import java.util.concurrent.ConcurrentLinkedQueue;
import java.util.concurrent.FutureTask;
import java.util.stream.Stream;
import org.junit.jupiter.api.AfterAll;
import org.junit.jupiter.api.Assumptions;
import org.junit.jupiter.api.BeforeAll;
import org.junit.jupiter.api.Test;

/** An exclusive channel keeps other processes out, whatever else this process does with the file. */
class ProcessLocksTest extends NioTestCase {
    private static final int ROUNDS = 100;

    private static OtherProcess other;

    ProcessLocksTest() {
        super(NioStorage::ofDefaultFileSystem);
    }

    @BeforeAll
    static void startOther() throws Exception {
        other = new OtherProcess("C.UTF-8");
    }

    @AfterAll
    static void stopOther() {
        other.close();
    }

    private ProviderChannel hold(StorageURI location) throws ProviderException {
        return provider.getChannel(location, /* create= */ true, /* truncate= */ false, /* exclusive= */ true);
    }

    private static void assertHeld(StorageURI location) throws Exception {
        assertEquals("IN_USE", other.ask("write", location));
    }

    @Test
    void extendedAttributesLeaveTheLock() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel channel = hold(a)) {
            assertTrue(provider.getExtendedAttributes(a).getAllAttributes().length > 0);
            assertHeld(a);
            assertEquals(5, channel.size());
        }
        assertEquals("ok", other.ask("write", a));
    }

    @Test
    void attachedAttributesAreLeftOutWhileTheFileIsHeld() throws Exception {
        StorageURI a = file("hello", "a");
        Assumptions.assumeTrue(Files.getFileStore(path()).supportsFileAttributeView("user"));
        Files.getFileAttributeView(path("a"), UserDefinedFileAttributeView.class)
                .write("text", ByteBuffer.wrap(new byte[] {'v'}));
        try (ProviderChannel channel = hold(a)) {
            assertFalse(hasText(a));
            assertEquals(0, channel.position());
        }
        assertTrue(hasText(a));
    }

    private boolean hasText(StorageURI location) throws ProviderException {
        return Stream.of(provider.getExtendedAttributes(location).getAllAttributes())
                .map(ExtendedAttribute::getName)
                .anyMatch("user:text"::equals);
    }

    @Test
    void archiveIsNoMountWhileItsFileIsHeld() throws Exception {
        Path archive = ArchiveCase.holding(path("a.zip"), "old", "there before");
        ArchiveCase.mount(archive);
        StorageURI file = new StorageURI("java://" + archive);
        try (ProviderChannel channel = hold(file)) {
            ProviderException refusal =
                    assertThrows(ProviderException.class, () -> provider.fileExists(ArchiveCase.OLD));
            assertTrue(refusal.getMessage().contains("is open exclusively"), refusal.getMessage());
            assertHeld(file);
            assertTrue(channel.size() > 0);
        }
        assertTrue(provider.fileExists(ArchiveCase.OLD));
        assertEquals(ErrorCode.IN_USE, assertThrows(ProviderException.class, () -> hold(file)).getErrorCode());
        System.clearProperty(ArchiveCase.PROPERTY);
    }

    @Test
    void timeIsSetAndTheLockStays() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel channel = hold(a)) {
            provider.setLastModified(a, 1_000_000_000_123L);
            assertHeld(a);
            assertEquals(1_000_000_000_123L, provider.getFileAttributes(a).getLastModified());
            assertEquals(5, channel.size());
        }
    }

    @Test
    void fileThatReplacesAnotherKeepsItsLock() throws Exception {
        StorageURI a = file("hello", "a");
        StorageURI b = file("old", "b");
        Files.setPosixFilePermissions(path("b"), PosixFilePermissions.fromString("rw-rw----"));
        if (Files.getFileStore(path()).supportsFileAttributeView("user")) {
            Files.getFileAttributeView(path("b"), UserDefinedFileAttributeView.class)
                    .write("text", ByteBuffer.wrap(new byte[] {'v'}));
        }
        try (ProviderChannel channel = hold(a)) {
            provider.moveFile(a, b, /* replace= */ true);
            assertHeld(b);
            assertEquals(5, channel.size());
        }
        assertEquals("rw-rw----", PosixFilePermissions.toString(Files.getPosixFilePermissions(path("b"))));
        assertEquals("ok", other.ask("write", b));
    }

    @Test
    void fileThatIsHeldDoesNotMoveToAnotherDisk() throws Exception {
        NioStorage disk = OtherDisk.open();
        StorageURI a = file("hello", "a");
        try (ProviderChannel channel = hold(a)) {
            assertFails(ErrorCode.IN_USE, a, () -> provider.moveFile(a, disk.at("a"), /* replace= */ false));
            assertHeld(a);
            assertEquals(5, channel.size());
        }
        assertEquals(0, disk.countEntries(disk.at()));
        disk.tearDown();
    }

    @Test
    void timeBefore1970WaitsForTheLock() throws Exception {
        StorageURI a = file("hello", "a");
        long before = provider.getFileAttributes(a).getLastModified();
        try (ProviderChannel channel = hold(a)) {
            assertFails(ErrorCode.IN_USE, a, () -> provider.setLastModified(a, -5000));
            assertHeld(a);
            assertEquals(before, provider.getFileAttributes(a).getLastModified());
            assertEquals(5, channel.size());
        }
        provider.setLastModified(a, -5000);
        assertEquals(-5000, provider.getFileAttributes(a).getLastModified());
    }

    @Test
    void attributesThatAreBeingReadDoNotTakeTheLockAlong() throws Exception {
        StorageURI a = file("hello", "a");
        Queue<Exception> failures = new ConcurrentLinkedQueue<>();
        Thread reader = new Thread(() -> {
            while (!Thread.currentThread().isInterrupted()) {
                try {
                    provider.getExtendedAttributes(a);
                    provider.setLastModified(a, 1000);
                } catch (ProviderException e) {
                    failures.add(e);
                }
            }
        });
        reader.start();
        try {
            for (int round = 0; round < ROUNDS; round++) {
                try (ProviderChannel channel = hold(a)) {
                    assertHeld(a);
                    assertEquals(0, channel.position());
                }
            }
        } finally {
            reader.interrupt();
            reader.join();
        }
        assertEquals(0, failures.size(), failures::toString);
    }

    @Test
    void channelWaitsForTheThreadThatCreatesTheFile() throws Exception {
        FutureTask<ProviderChannel> opening = new FutureTask<>(() -> hold(at("a")));
        Thread thread = new Thread(opening);
        Path path = path("a");
        FileUses.creating(path, () -> {
            Files.createFile(path);
            thread.start();
            while (thread.getState() != Thread.State.WAITING) {
                assertFalse(opening.isDone(), "it did not wait");
                Thread.onSpinWait();
            }
        });
        try (ProviderChannel channel = opening.get()) {
            assertHeld(at("a"));
            assertEquals(0, channel.size());
        }
    }

    @Test
    void creationThroughALinkThatLeadsNowhere() throws Exception {
        folder("f");
        link("f/b", "a");
        link("a", "c");
        try (ProviderChannel channel = hold(at("c"))) {
            assertHeld(at("f", "b"));
            assertEquals(0, channel.size());
        }
        assertFile("", at("f", "b"));
    }

    @Test
    void copyOfAHeldFileIsRefused() throws Exception {
        StorageURI a = file("hello", "a");
        NioStorage elsewhere = NioStorage.ofMemory();
        try (ProviderChannel channel = hold(a)) {
            assertFails(ErrorCode.IN_USE, a, () -> provider.moveFile(a, elsewhere.at("a"), /* replace= */ false));
            assertHeld(a);
            assertEquals(5, channel.size());
            assertEquals(0, elsewhere.countEntries(elsewhere.root()));
        } finally {
            elsewhere.tearDown();
        }
    }

    /** Behaves as if the file took the name between the check and the opening. */
    @Test
    void fileThatWasOpenedByMistakeIsClosedAfterTheLock() throws Exception {
        StorageURI a = file("hello", "a");
        FileChannel mistaken = FileChannel.open(path("a"), StandardOpenOption.READ);
        try (ProviderChannel channel = hold(a)) {
            FileUses.discard(found(path("a"), a), mistaken);
            assertHeld(a);
            assertEquals(5, channel.size());
        }
        assertFalse(mistaken.isOpen());
        assertEquals("ok", other.ask("write", a));
    }

    private static Found found(Path path, StorageURI location) throws Exception {
        return new Found(location, path, EntryKind.attributesOf(path));
    }
}
