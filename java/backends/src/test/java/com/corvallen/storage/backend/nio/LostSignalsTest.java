package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.StandardWatchEventKinds;
import java.nio.file.WatchEvent;
import java.nio.file.WatchKey;
import java.nio.file.Watchable;
import java.time.Duration;
import java.util.List;
import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** File systems that lose signals, give none, or give too few. */
class LostSignalsTest extends NioTestCase {
    private final Replica replica = new Replica();
    private NioProvider watching;

    LostSignalsTest() {
        super(NioStorage::ofFolder);
    }

    @AfterEach
    void disposeOfProvider() {
        watching.dispose();
    }

    /** Asserts that who follows the events knows in the end what is there, and was told nothing twice. */
    private void assertFollows(Signals.Opener opener) throws Exception {
        watching = new NioProvider(new Watcher(opener, Duration.ofMillis(20)));
        StorageURI f = folder("f");
        watching.publishEventsFor(f, replica);
        long seed = System.nanoTime();
        System.out.println("seed " + seed);
        new Storm(path("f"), seed, 500).run();
        replica.awaitListing(provider, f);
        assertEquals(List.of(), replica.mistakes());
    }

    /** Signals that say of every folder only that something has been lost. */
    private static final class Overflowing implements Signals {
        private final Signals signals;
        private final Map<WatchKey, WatchKey> keys = new ConcurrentHashMap<>();

        Overflowing(FileSystem system) throws IOException {
            signals = WatchSignals.open(system);
        }

        @Override
        public WatchKey register(Path folder) throws IOException {
            return keys.computeIfAbsent(signals.register(folder), OverflowKey::new);
        }

        @Override
        public WatchKey poll(long nanos) throws InterruptedException {
            WatchKey key = signals.poll(nanos);
            return key == null ? null : keys.computeIfAbsent(key, OverflowKey::new);
        }

        @Override
        public void close() throws IOException {
            signals.close();
        }
    }

    private static final class OverflowKey implements WatchKey {
        private final WatchKey key;

        OverflowKey(WatchKey key) {
            this.key = key;
        }

        @Override
        public List<WatchEvent<?>> pollEvents() {
            key.pollEvents();
            return List.of(new WatchEvent<Object>() {
                @Override
                public Kind<Object> kind() {
                    return StandardWatchEventKinds.OVERFLOW;
                }

                @Override
                public int count() {
                    return 1;
                }

                @Override
                public Object context() {
                    return null;
                }
            });
        }

        @Override
        public boolean isValid() {
            return key.isValid();
        }

        @Override
        public boolean reset() {
            return key.reset();
        }

        @Override
        public void cancel() {
            key.cancel();
        }

        @Override
        public Watchable watchable() {
            return key.watchable();
        }
    }

    @Test
    void lostSignalsAreMadeUpForByLooking() throws Exception {
        assertFollows(Overflowing::new);
    }

    @Test
    void systemWithoutSignalsIsPolled() throws Exception {
        assertFollows(system -> {
            throw new UnsupportedOperationException();
        });
    }

    /** As when the system's limit on watched folders is reached. */
    @Test
    void foldersThatCannotBeSignalledArePolled() throws Exception {
        assertFollows(Limited::new);
    }

    /** Signals for the first few folders only. */
    private static final class Limited implements Signals {
        private final Signals signals;
        private int left = 3;

        Limited(FileSystem system) throws IOException {
            signals = WatchSignals.open(system);
        }

        @Override
        public WatchKey register(Path folder) throws IOException {
            if (left-- <= 0) {
                throw new IOException("User limit of inotify watches reached");
            }
            return signals.register(folder);
        }

        @Override
        public WatchKey poll(long nanos) throws InterruptedException {
            return signals.poll(nanos);
        }

        @Override
        public void close() throws IOException {
            signals.close();
        }
    }
}
