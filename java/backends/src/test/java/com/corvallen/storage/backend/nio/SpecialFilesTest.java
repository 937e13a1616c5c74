package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.net.ProtocolFamily;
import java.net.SocketAddress;
import java.net.StandardProtocolFamily;
import java.nio.channels.ServerSocketChannel;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.FutureTask;
import java.util.concurrent.TimeUnit;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.Assumptions;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;

/**
 * Pipes and sockets have attributes and can be moved and removed. They are never opened, because that may block for
 * ever.
 */
class SpecialFilesTest extends NioTestCase {
    private static final int ROUNDS = 500;

    SpecialFilesTest() {
        super(NioStorage::ofDefaultFileSystem);
    }

    /** Runs what would block for ever if it opened a pipe. */
    private static void assertEnds(Executable action) throws Exception {
        FutureTask<Throwable> task = new FutureTask<>(() -> {
            try {
                action.execute();
                return null;
            } catch (Throwable e) {
                return e;
            }
        });
        Thread thread = new Thread(task);
        thread.setDaemon(true);
        thread.start();
        assertNull(task.get(30, TimeUnit.SECONDS));
    }

    private Map<String, String> attributesOf(StorageURI location) throws ProviderException {
        return Stream.of(provider.getExtendedAttributes(location).getAllAttributes())
                .collect(Collectors.toMap(ExtendedAttribute::getName, ExtendedAttribute::getValue));
    }

    private void assertOther(Map<String, String> attributes) throws Exception {
        assertEquals("true", attributes.get("basic:isOther"));
        assertEquals("false", attributes.get("basic:isRegularFile"));
        assertEquals(Files.getOwner(path()).getName(), attributes.get("posix:owner"));
    }

    @Test
    void pipeHasAttributes() throws Exception {
        StorageURI pipe = pipe("pipe");
        assertEnds(() -> {
            assertOther(attributesOf(pipe));
            assertEquals(0, provider.getFileAttributes(pipe).getSize());
        });
    }

    @Test
    void linkToAPipeHasThemToo() throws Exception {
        pipe("pipe");
        StorageURI link = link("pipe", "link");
        assertEnds(() -> {
            assertOther(attributesOf(link));
            assertEquals("true", attributesOf(link).get("basic:isSymbolicLink"));
        });
    }

    @Test
    void timeOfAPipeIsNotSet() throws Exception {
        StorageURI pipe = pipe("pipe");
        assertEnds(() -> assertFails(ErrorCode.NOT_SUPPORTED, pipe, () -> provider.setLastModified(pipe, 1000)));
    }

    @Test
    void pipeIsNotOpened() throws Exception {
        StorageURI pipe = pipe("pipe");
        assertEnds(() -> {
            assertFails(ErrorCode.NOT_SUPPORTED, pipe, () -> provider.getReadOnlyChannel(pipe));
            assertFails(ErrorCode.NOT_SUPPORTED, pipe, () -> provider.getChannel(pipe, true, true, true));
            assertFails(ErrorCode.NOT_A_FOLDER, pipe, () -> provider.listFolder(pipe));
        });
    }

    @Test
    void pipeIsWatched() throws Exception {
        StorageURI f = folder("f");
        StorageURI pipe = pipe("f", "pipe");
        Replica replica = new Replica();
        assertEnds(() -> {
            provider.publishEventsFor(f, replica);
            provider.publishEventsFor(pipe, replica);
            StorageURI second = pipe("f", "second");
            replica.await(EventKind.ChildAdded, EntryType.File, second);
            provider.removeFile(pipe);
            replica.await(EventKind.SelfRemoved, EntryType.File, pipe);
        });
    }

    @Test
    void pipeMovesAndGoes() throws Exception {
        StorageURI pipe = pipe("pipe");
        assertEnds(() -> {
            provider.moveFile(pipe, at("moved"), /* replace= */ false);
            provider.removeFile(at("moved"));
        });
        assertMissing(at("moved"));
    }

    @Test
    void socketHasAttributes() throws Exception {
        try (ServerSocketChannel socket = socket(path("socket"))) {
            assertTrue(socket.isOpen());
            assertOther(attributesOf(at("socket")));
            assertFails(ErrorCode.NOT_SUPPORTED, at("socket"), () -> provider.setLastModified(at("socket"), 1000));
            assertFails(ErrorCode.NOT_SUPPORTED, at("socket"), () -> provider.getReadOnlyChannel(at("socket")));
        }
    }

    /** Uses reflection: Java has such sockets since 16, but these tests are compiled for an older Java. */
    private static ServerSocketChannel socket(Path path) throws Exception {
        Assumptions.assumeTrue(Runtime.version().feature() >= 16, "this Java has no such sockets");
        SocketAddress address = (SocketAddress)
                Class.forName("java.net.UnixDomainSocketAddress").getMethod("of", Path.class).invoke(null, path);
        ProtocolFamily family = StandardProtocolFamily.valueOf("UNIX");
        ServerSocketChannel socket = (ServerSocketChannel)
                ServerSocketChannel.class.getMethod("open", ProtocolFamily.class).invoke(null, family);
        return socket.bind(address);
    }

    /** Opening a pipe for reading and writing does not block; afterwards it is found to be a pipe. */
    @Test
    void pipeThatTakesAFilesNameIsNotWrittenTo() throws Exception {
        StorageURI a = file("hello", "a");
        Files.createLink(path("file"), path("a"));
        pipe("pipe");
        Thread swapping = new Thread(this::swap);
        swapping.start();
        try {
            assertEnds(() -> {
                for (int round = 0; round < ROUNDS; round++) {
                    openIfFile(a);
                }
            });
        } finally {
            swapping.interrupt();
            swapping.join();
        }
    }

    private void swap() {
        try {
            while (!Thread.currentThread().isInterrupted()) {
                for (String name : new String[] {"pipe", "file"}) {
                    Files.deleteIfExists(path("next"));
                    Files.createLink(path("next"), path(name));
                    Files.move(path("next"), path("a"), StandardCopyOption.ATOMIC_MOVE);
                }
            }
        } catch (Exception e) {
            throw new AssertionError(e);
        }
    }

    private void openIfFile(StorageURI location) throws ProviderException {
        try (ProviderChannel channel = provider.getChannel(location, false, false, false)) {
            // A pipe has no position.
            assertEquals(0, channel.position());
            assertEquals(5, channel.size());
        } catch (ProviderException e) {
            assertEquals(ErrorCode.NOT_SUPPORTED, e.getErrorCode(), e.getMessage());
        }
    }

    /** Does not wait even for a pipe that took the place of a folder. */
    @Test
    void pipeInTheFoldersPlaceIsNoFolder() throws Exception {
        folder("f");
        Found folder = new Found(at("f"), path("f"), EntryKind.attributesOf(path("f")));
        provider.removeFolder(at("f"));
        pipe("f");
        assertEnds(() -> {
            assertFalse(Files.isDirectory(folder.openedPath()));
            assertNoFolder(() -> Listing.of(folder, Mount.ofDefaultFileSystem()));
            assertNoFolder(() -> Files.newDirectoryStream(folder.openedPath()).close());
        });
    }

    /** Java 17 reports that it is not a folder, later ones that nothing is there. */
    private void assertNoFolder(Failures.Action action) throws Exception {
        StorageURI f = at("f");
        ProviderException failure = assertThrows(ProviderException.class, () -> Failures.translated(f, action));
        assertTrue(
                Set.of(ErrorCode.NOT_A_FOLDER, ErrorCode.NOT_FOUND).contains(failure.getErrorCode()),
                failure.getMessage());
    }
}
