package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.RecordingPublisher;
import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.CountDownLatch;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicBoolean;
import java.util.stream.Collectors;
import org.junit.jupiter.api.Test;

/** The thread that publishes events: what it reports, and how it ends. */
class WatcherTest extends NioTestCase {
    private final Replica replica = new Replica();

    WatcherTest() {
        super(NioStorage::ofFolder);
    }

    @Test
    void folderAboveThatMovesAwayTakesTheLocationAlong() throws Exception {
        folder("above");
        StorageURI f = folder("above", "f");
        StorageURI child = file("x", "above", "f", "child");
        provider.publishEventsFor(f, replica);
        Files.move(path("above"), path("elsewhere"));
        replica.await(EventKind.SelfRemoved, EntryType.Folder, f);
        assertEquals(List.of("ChildRemoved File"), replica.eventsOf(child));
    }

    @Test
    void attributesOfAFolderModifyItself() throws Exception {
        StorageURI f = folder("f");
        StorageURI inner = folder("f", "inner");
        provider.publishEventsFor(f, replica);
        provider.setLastModified(inner, 1_000_000_000_000L);
        provider.setLastModified(f, 1_000_000_000_000L);
        replica.await(EventKind.ChildModified, EntryType.Folder, inner);
        replica.await(EventKind.SelfModified, EntryType.Folder, f);
    }

    @Test
    void linksAreReportedAsWhatTheyLeadToAndNotEntered() throws Exception {
        StorageURI f = folder("f");
        folder("g");
        provider.publishEventsFor(f, replica);
        StorageURI toFolder = link("../g", "f", "toFolder");
        StorageURI dangling = link("nowhere", "f", "dangling");
        file("x", "g", "behind");
        replica.await(EventKind.ChildAdded, EntryType.Folder, toFolder);
        replica.await(EventKind.ChildAdded, EntryType.File, dangling);
        StorageURI last = file("x", "f", "last");
        replica.await(EventKind.ChildAdded, EntryType.File, last);
        assertEquals(List.of(), replica.eventsOf(at("f", "toFolder", "behind")));
    }

    @Test
    void locationBehindALinkIsWatched() throws Exception {
        folder("f");
        StorageURI link = link("f", "link");
        provider.publishEventsFor(link, replica);
        file("x", "f", "a");
        replica.await(EventKind.ChildAdded, EntryType.File, at("link", "a"));
    }

    @Test
    void oneThreadServesAllFileSystems() throws Exception {
        NioStorage memory = NioStorage.ofMemory();
        NioStorage archive = NioStorage.ofArchive();
        try {
            List<Thread> before = threads();
            provider.publishEventsFor(at(), replica);
            provider.publishEventsFor(memory.root(), replica);
            provider.publishEventsFor(archive.root(), replica);
            for (StorageURI root : List.of(at(), memory.root(), archive.root())) {
                provider.createFile(root.resolve("a"));
                replica.await(EventKind.ChildAdded, EntryType.File, root.resolve("a"));
            }
            List<Thread> started = threads();
            started.removeAll(before);
            assertEquals(1, started.size());
            assertTrue(started.get(0).isDaemon());
            provider.dispose();
            assertFalse(started.get(0).isAlive());
        } finally {
            memory.tearDown();
            archive.tearDown();
        }
    }

    private static List<Thread> threads() {
        return Thread.getAllStackTraces().keySet().stream()
                .filter(thread -> thread.getName().equals("storage-events"))
                .collect(Collectors.toCollection(ArrayList::new));
    }

    @Test
    void providerWithoutWatchesHasNoThread() throws Exception {
        List<Thread> before = threads();
        NioProvider idle = new NioProvider();
        idle.folderExists(at());
        assertEquals(before, threads());
        idle.dispose();
    }

    @Test
    void disposalWaitsForTheDeliveryThatRuns() throws Exception {
        CountDownLatch inside = new CountDownLatch(1);
        CountDownLatch release = new CountDownLatch(1);
        AtomicBoolean delivered = new AtomicBoolean();
        provider.publishEventsFor(at(), new RecordingPublisher() {
            @Override
            public void publish(EventKind kind, StorageURI w, StorageURI changed, EntryType type, String origin) {
                inside.countDown();
                try {
                    release.await(30, TimeUnit.SECONDS);
                } catch (InterruptedException e) {
                    throw new AssertionError(e);
                }
                delivered.set(true);
            }
        });
        file("x", "a");
        inside.await();
        AtomicBoolean seen = new AtomicBoolean();
        Thread disposal = new Thread(() -> {
            provider.dispose();
            seen.set(delivered.get());
        });
        disposal.start();
        while (disposal.getState() != Thread.State.WAITING) {
            assertTrue(disposal.isAlive(), "disposal did not wait");
            Thread.onSpinWait();
        }
        release.countDown();
        disposal.join();
        assertTrue(seen.get(), "a delivery was running when disposal had returned");
    }

    @Test
    void disposalFromWithinADeliveryReturns() throws Exception {
        CountDownLatch disposed = new CountDownLatch(1);
        List<Thread> before = threads();
        provider.publishEventsFor(at(), new RecordingPublisher() {
            @Override
            public void publish(EventKind kind, StorageURI w, StorageURI changed, EntryType type, String origin) {
                provider.dispose();
                disposed.countDown();
            }
        });
        file("x", "a");
        assertTrue(disposed.await(30, TimeUnit.SECONDS));
        for (Thread thread : threads()) {
            if (!before.contains(thread)) {
                thread.join();
            }
        }
    }

    @Test
    void publisherMayCallTheProvider() throws Exception {
        StorageURI f = folder("f");
        StorageURI g = folder("g");
        provider.publishEventsFor(f, new RecordingPublisher() {
            @Override
            public void publish(EventKind kind, StorageURI w, StorageURI changed, EntryType type, String origin) {
                try {
                    provider.stopPublishingEventsFor(f);
                    provider.publishEventsFor(g, replica);
                    provider.createFile(g.resolve("answer"));
                } catch (ProviderException e) {
                    throw new AssertionError(e);
                }
            }
        });
        file("x", "f", "question");
        replica.await(EventKind.ChildAdded, EntryType.File, at("g", "answer"));
    }

    @Test
    void publisherThatThrowsDoesNotEndTheWatch() throws Exception {
        StorageURI f = folder("f");
        StorageURI g = folder("g");
        CountDownLatch thrown = new CountDownLatch(1);
        provider.publishEventsFor(f, new RecordingPublisher() {
            @Override
            public void publish(EventKind kind, StorageURI w, StorageURI changed, EntryType type, String origin) {
                thrown.countDown();
                throw new IllegalStateException("thrown by a test");
            }
        });
        provider.publishEventsFor(g, replica);
        file("x", "f", "a");
        assertTrue(thrown.await(30, TimeUnit.SECONDS));
        file("x", "g", "a");
        replica.await(EventKind.ChildAdded, EntryType.File, at("g", "a"));
    }

    @Test
    void fileSystemThatIsClosedByItsOwnerDoesNotEndTheOthers() throws Exception {
        NioStorage memory = NioStorage.ofMemory();
        provider.publishEventsFor(memory.root(), replica);
        provider.publishEventsFor(at(), replica);
        memory.tearDown();
        StorageURI a = file("x", "a");
        replica.await(EventKind.ChildAdded, EntryType.File, a);
    }
}
