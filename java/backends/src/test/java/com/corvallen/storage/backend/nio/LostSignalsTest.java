package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.StandardWatchEventKinds;
import java.nio.file.WatchEvent;
import java.nio.file.WatchKey;
import java.time.Duration;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** File systems that lose signals, send none, or send too few. */
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

    /** Asserts that anyone who follows the events finally knows what is there, and that nothing was reported twice. */
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

    /** Signals that only say, for every folder, that something was lost. */
    private static final class Overflowing extends DelegatingSignals {
        Overflowing(FileSystem system) throws IOException {
            super(system);
        }

        @Override
        WatchKey replaced(WatchKey key) {
            return new OverflowKey(key);
        }
    }

    private static final class OverflowKey extends DelegatingSignals.Key {
        OverflowKey(WatchKey key) {
            super(key);
        }

        @Override
        public List<WatchEvent<?>> pollEvents() {
            super.pollEvents();
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
    }

    @Test
    void lostSignalsAreMadeUpForByScanning() throws Exception {
        assertFollows(Overflowing::new);
    }

    @Test
    void systemWithoutSignalsIsPolled() throws Exception {
        assertFollows(system -> {
            throw new UnsupportedOperationException();
        });
    }

    /** Behaves as if the system's limit on watched folders is reached. */
    @Test
    void foldersThatCannotBeSignalledArePolled() throws Exception {
        assertFollows(Limited::new);
    }

    /** Signals only for the first few folders. */
    private static final class Limited extends DelegatingSignals {
        private int left = 3;

        Limited(FileSystem system) throws IOException {
            super(system);
        }

        @Override
        public WatchKey register(Path folder) throws IOException {
            if (left-- <= 0) {
                throw new IOException("User limit of inotify watches reached");
            }
            return super.register(folder);
        }
    }
}
