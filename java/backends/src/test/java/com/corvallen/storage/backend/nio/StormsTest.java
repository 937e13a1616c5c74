package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import com.corvallen.storage.contract.RecordingPublisher;
import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.util.List;
import java.util.concurrent.CountDownLatch;
import java.util.concurrent.TimeUnit;
import org.junit.jupiter.api.RepeatedTest;
import org.junit.jupiter.api.Test;

/** Whatever others do at the same time, a host that follows the events finally knows what is there. */
class StormsTest extends NioTestCase {
    private final Replica replica = new Replica();
    private final long seed = System.nanoTime();

    StormsTest() {
        super(NioStorage::ofFolder);
    }

    private Thread[] storms(int count, int steps) {
        System.out.println("seed " + seed);
        Thread[] threads = new Thread[count];
        for (int i = 0; i < count; i++) {
            threads[i] = new Thread(new Storm(pathOf("f"), seed + i, steps));
            threads[i].start();
        }
        return threads;
    }

    private Path pathOf(String name) {
        try {
            return path(name);
        } catch (Exception e) {
            throw new AssertionError(e);
        }
    }

    private static void join(Thread... threads) throws InterruptedException {
        for (Thread thread : threads) {
            thread.join();
        }
    }

    @RepeatedTest(5)
    void stormAfterTheStartIsFollowed() throws Exception {
        StorageURI f = folder("f");
        provider.publishEventsFor(f, replica);
        join(storms(3, 300));
        replica.awaitListing(provider, f);
        assertEquals(List.of(), replica.mistakes());
    }

    /** Few enough changes for the system not to lose any: a lost change that a listing has seen cannot be found. */
    @RepeatedTest(20)
    void startAndListingAmidAStormMissNothing() throws Exception {
        StorageURI f = folder("f");
        Thread[] storms = storms(3, 100);
        provider.publishEventsFor(f, replica);
        replica.list(provider, f);
        join(storms);
        replica.awaitListing(provider, f);
    }

    @Test
    void overlappingWatchesAreBothFollowed() throws Exception {
        StorageURI f = folder("f");
        StorageURI inner = folder("f", "n0");
        Replica innerReplica = new Replica();
        provider.publishEventsFor(f, replica);
        provider.publishEventsFor(inner, innerReplica);
        replica.list(provider, f);
        StorageURI deep = file("x", "f", "n0", "deep");
        replica.awaitListing(provider, f);
        innerReplica.awaitListing(provider, inner);
        provider.stopPublishingEventsFor(inner);
        provider.removeFile(deep);
        replica.awaitListing(provider, f);
        assertEquals(List.of(), replica.mistakes());
        assertFalse(innerReplica.eventsOf(deep).contains("ChildRemoved File"));
    }

    @Test
    void stormOfAnotherProcessIsFollowed() throws Exception {
        StorageURI f = folder("f");
        provider.publishEventsFor(f, replica);
        String script = "for i in 1 2 3 4 5 6 7 8 9 10; do mkdir d; : > d/a; : > d/b$i; mv d e$i; : > f$i; mv f$i g$i;"
                + " rm -r e$i/a; mkdir d; rmdir d; done; rm -r e5";
        Process process = new ProcessBuilder("sh", "-c", script).directory(path("f").toFile()).start();
        assertEquals(true, process.waitFor(60, TimeUnit.SECONDS));
        assertEquals(0, process.exitValue());
        replica.awaitListing(provider, f);
        assertEquals(List.of(), replica.mistakes());
        assertEquals(10 + 9 * 2, replica.known().size());
    }

    @RepeatedTest(3)
    void folderThatIsMadeAgainAtOnceIsFollowed() throws Exception {
        StorageURI f = folder("f");
        provider.publishEventsFor(f, replica);
        for (int i = 0; i < 200; i++) {
            Files.createDirectory(path("f", "d"));
            Files.createFile(path("f", "d", "child" + i));
            if (i < 199) {
                Removal.removeTree(path("f", "d"));
            }
        }
        replica.awaitListing(provider, f);
        file("x", "f", "d", "last");
        replica.awaitListing(provider, f);
        assertEquals(List.of(), replica.mistakes());
    }

    /** Keeps the watcher's thread from scanning until the result is counted down. */
    private CountDownLatch hold() throws Exception {
        StorageURI gate = folder("gate");
        CountDownLatch inside = new CountDownLatch(1);
        CountDownLatch release = new CountDownLatch(1);
        provider.publishEventsFor(gate, new RecordingPublisher() {
            @Override
            public void publish(EventKind kind, StorageURI w, StorageURI changed, EntryType type, String origin) {
                inside.countDown();
                try {
                    release.await(60, TimeUnit.SECONDS);
                } catch (InterruptedException e) {
                    throw new AssertionError(e);
                }
            }
        });
        file("x", "gate", "knock");
        inside.await();
        return release;
    }

    /** The system's queue for a folder holds 512 events; beyond that they are dropped, and the folder is listed. */
    @Test
    void moreEventsThanTheSystemKeepsAreMadeUpFor() throws Exception {
        StorageURI f = folder("f");
        provider.publishEventsFor(f, replica);
        CountDownLatch release = hold();
        for (int i = 0; i < 3000; i++) {
            Files.createFile(path("f", "file" + i));
        }
        for (int i = 0; i < 1500; i++) {
            Files.delete(path("f", "file" + 2 * i));
        }
        release.countDown();
        replica.awaitListing(provider, f);
        assertEquals(List.of(), replica.mistakes());
        assertEquals(1500, replica.known().size());
    }

    @Test
    void whatComesAndGoesBetweenTwoScansIsReportedAsAFile() throws Exception {
        StorageURI f = folder("f");
        provider.publishEventsFor(f, replica);
        CountDownLatch release = hold();
        StorageURI brief = folder("f", "brief");
        provider.removeFolder(brief);
        release.countDown();
        replica.await(EventKind.ChildRemoved, EntryType.File, brief);
        assertEquals(List.of("ChildAdded File", "ChildRemoved File"), replica.eventsOf(brief));
    }

    @Test
    void whatIsMadeAgainBetweenTwoScansIsReportedAgain() throws Exception {
        StorageURI f = folder("f");
        StorageURI again = folder("f", "again");
        StorageURI replaced = folder("f", "replaced");
        provider.publishEventsFor(f, replica);
        replica.list(provider, f);
        CountDownLatch release = hold();
        provider.removeFolder(again);
        folder("f", "again");
        Files.move(Files.createDirectory(path("new")), path("f", "replaced"), StandardCopyOption.ATOMIC_MOVE);
        release.countDown();
        replica.await(EventKind.ChildAdded, EntryType.Folder, again);
        replica.await(EventKind.ChildAdded, EntryType.Folder, replaced);
        assertEquals(List.of("ChildRemoved Folder", "ChildAdded Folder"), replica.eventsOf(again));
        assertEquals(List.of("ChildRemoved Folder", "ChildAdded Folder"), replica.eventsOf(replaced));
        assertEquals(List.of(), replica.mistakes());
    }
}
