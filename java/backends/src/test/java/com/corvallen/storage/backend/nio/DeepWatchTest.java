package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.contract.RecordingPublisher;
import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** A tree deeper than the stack is watched like any other. */
class DeepWatchTest extends NioTestCase {
    private static final int LEVELS = 1000;

    private final RecordingPublisher events = new RecordingPublisher();

    DeepWatchTest() {
        super(NioStorage::ofFolder);
    }

    /** Makes a tree and returns its deepest folder. */
    private Path grow(String name) throws Exception {
        Path deep = path(name);
        Files.createDirectory(deep);
        for (int level = 1; level < LEVELS; level++) {
            deep = deep.resolve("d");
            Files.createDirectory(deep);
        }
        return deep;
    }

    private StorageURI at(Path path) throws Exception {
        return new StorageURI(at() + "/" + path().relativize(path));
    }

    @AfterEach
    void remove() throws Exception {
        for (String name : List.of("f", "deep")) {
            Process rm = new ProcessBuilder("rm", "-rf", path(name).toString()).inheritIO().start();
            assertEquals(0, rm.waitFor());
        }
    }

    @Test
    void treeThatComesAndGoesIsReported() throws Exception {
        StorageURI f = folder("f");
        Path deepest = path("f", "deep").resolve(path("deep").relativize(grow("deep")));
        provider.publishEventsFor(f, events);
        Files.move(path("deep"), path("f", "deep"));
        events.await(EventKind.ChildAdded, EntryType.Folder, at(deepest));
        Files.createFile(deepest.resolve("a"));
        events.await(EventKind.ChildAdded, EntryType.File, at(deepest.resolve("a")));
        Files.move(path("f", "deep"), path("deep"));
        events.await(EventKind.ChildRemoved, EntryType.Folder, at("f", "deep"));
        assertEquals(List.of("ChildAdded File", "ChildRemoved File"), events.eventsOf(at(deepest.resolve("a"))));
        StorageURI last = file("x", "f", "last");
        events.await(EventKind.ChildAdded, EntryType.File, last);
    }

    @Test
    void treeThatIsThereIsWatched() throws Exception {
        Path deepest = grow("f");
        provider.publishEventsFor(at("f"), events);
        Files.createFile(deepest.resolve("a"));
        events.await(EventKind.ChildAdded, EntryType.File, at(deepest.resolve("a")));
        provider.stopPublishingEventsFor(at("f"));
    }
}
