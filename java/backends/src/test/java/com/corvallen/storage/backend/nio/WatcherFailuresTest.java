package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import com.corvallen.storage.contract.RecordingPublisher;
import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.WatchEvent;
import java.nio.file.WatchKey;
import java.time.Duration;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.CountDownLatch;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicInteger;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** No failure ends the watcher's thread; what it has missed is reported later. */
class WatcherFailuresTest extends NioTestCase {
    private static final Duration INTERVAL = Duration.ofMillis(20);

    private final Replica replica = new Replica();
    private final AtomicInteger failures = new AtomicInteger();
    private NioProvider watching;

    WatcherFailuresTest() {
        super(NioStorage::ofFolder);
    }

    @AfterEach
    void disposeOfProvider() {
        watching.dispose();
    }

    private StorageURI watch(Watcher watcher) throws Exception {
        watching = new NioProvider(watcher);
        StorageURI f = folder("f");
        watching.publishEventsFor(f, replica);
        return f;
    }

    private void assertFollows(StorageURI f) throws Exception {
        StorageURI last = file("x", "f", "last");
        replica.await(EventKind.ChildAdded, EntryType.File, last);
        replica.awaitListing(provider, f);
        assertEquals(List.of(), replica.mistakes());
    }

    /** Signals that fail in unexpected ways. */
    private class Faulty extends DelegatingSignals {
        Faulty(FileSystem system) throws IOException {
            super(system);
        }

        @Override
        WatchKey replaced(WatchKey key) {
            return new FaultyKey(key);
        }

        @Override
        public WatchKey register(Path folder) throws IOException {
            if (folder.endsWith("bad") && failures.incrementAndGet() == 1) {
                throw new StackOverflowError("thrown by a test");
            }
            return super.register(folder);
        }
    }

    /** Loses its events by an error if a certain file exists. */
    private final class FaultyKey extends DelegatingSignals.Key {
        FaultyKey(WatchKey key) {
            super(key);
        }

        @Override
        public List<WatchEvent<?>> pollEvents() {
            List<WatchEvent<?>> events = super.pollEvents();
            if (Files.exists(((Path) watchable()).resolve("lost")) && failures.incrementAndGet() == 1) {
                throw new OutOfMemoryError("thrown by a test");
            }
            return events;
        }
    }

    @Test
    void folderThatCannotBeScannedIsScannedLater() throws Exception {
        StorageURI f = watch(new Watcher(Faulty::new, INTERVAL));
        folder("ready");
        file("x", "ready", "a");
        Files.move(path("ready"), path("f", "bad"));
        replica.await(EventKind.ChildAdded, EntryType.File, at("f", "bad", "a"));
        assertFollows(f);
        assertFalse(failures.get() < 2, "it was not tried again");
    }

    @Test
    void signalsThatAreLostByAnErrorAreMadeUpFor() throws Exception {
        StorageURI f = watch(new Watcher(Faulty::new, INTERVAL));
        StorageURI lost = file("x", "f", "lost");
        replica.await(EventKind.ChildAdded, EntryType.File, lost);
        assertFollows(f);
    }

    @Test
    void waitingThatFailsIsTriedAgain() throws Exception {
        CountDownLatch failed = new CountDownLatch(3);
        StorageURI f = watch(new Watcher(
                system -> new Faulty(system) {
                    @Override
                    public WatchKey poll(long nanos) throws InterruptedException {
                        if (failed.getCount() > 0) {
                            failed.countDown();
                            throw new IllegalStateException("thrown by a test");
                        }
                        return super.poll(nanos);
                    }
                },
                INTERVAL));
        failed.await(30, TimeUnit.SECONDS);
        assertFollows(f);
    }

    @Test
    void publisherThatFailsDoesNotEndTheWatch() throws Exception {
        StorageURI f = watch(new Watcher(WatchSignals::open, INTERVAL));
        StorageURI g = folder("g");
        CountDownLatch thrown = new CountDownLatch(1);
        watching.publishEventsFor(g, new RecordingPublisher() {
            @Override
            public void publish(EventKind kind, StorageURI w, StorageURI changed, EntryType type, String origin) {
                thrown.countDown();
                throw new AssertionError("thrown by a test");
            }
        });
        file("x", "g", "a");
        thrown.await(30, TimeUnit.SECONDS);
        assertFollows(f);
    }

    @Test
    void threadThatHasEndedIsStartedAgain() throws Exception {
        List<Thread> threads = new ArrayList<>();
        StorageURI f = watch(new Watcher(WatchSignals::open, INTERVAL, work -> {
            threads.add(threads.isEmpty() ? new Thread() : new Thread(work));
            return threads.get(threads.size() - 1);
        }));
        threads.get(0).join();
        watching.publishEventsFor(f, replica);
        assertFollows(f);
        watching.publishEventsFor(f, replica);
        assertEquals(2, threads.size());
    }
}
