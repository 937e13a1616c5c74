package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.FileTime;
import java.util.HashSet;
import java.util.Optional;
import java.util.Set;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicBoolean;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

/** A move removes the name that a file had, but never a newer file that another process puts there. */
class SpareNameTest extends NioTestCase {
    private static final int SECONDS =
            Integer.parseInt(System.getenv().getOrDefault("MOVE_RACE_SECONDS", "1"));

    SpareNameTest() {
        super(NioStorage::ofFolder);
    }

    private static BasicFileAttributes attributesOf(Path path) throws IOException {
        return Files.readAttributes(path, BasicFileAttributes.class);
    }

    /** Puts a version in place, as editors do. */
    private void put(String content, String name) {
        try {
            Path temporary = write(path("temporary"), content);
            Files.move(temporary, path(name), StandardCopyOption.ATOMIC_MOVE);
        } catch (Exception e) {
            throw new AssertionError(e);
        }
    }

    @Test
    void newerVersionStaysWhenTheOlderHasAnotherName() throws Exception {
        file("1", "source");
        Files.createLink(path("target"), path("source"));
        BasicFileAttributes linked = attributesOf(path("target"));
        put("2", "source");
        SpareName.remove(path("source"), path("target"), linked);
        assertFile("2", at("source"));
        assertFile("1", at("target"));
    }

    @Test
    void versionThatComesAtTheLastMomentIsPutBack() throws Exception {
        file("1", "source");
        assertFalse(SpareName.removeIf(path("source"), aside -> false));
        assertFile("1", at("source"));
        assertEquals(1, storage.countEntries(at()));
    }

    @Test
    void versionThatCannotBePutBackIsKept() throws Exception {
        file("1", "source");
        InUseException failure = assertThrows(
                InUseException.class, () -> SpareName.removeIf(path("source"), aside -> {
                    put("2", "source");
                    return false;
                }));
        assertFile("2", at("source"));
        Path kept = path(failure.getReason().substring(failure.getReason().lastIndexOf(' ') + 1));
        assertEquals("1", read(kept));
    }

    @Test
    void fileThatWasWrittenToIsNotRemoved() throws Exception {
        file("1", "source");
        BasicFileAttributes copied = attributesOf(path("source"));
        write(path("source"), "22");
        assertFalse(SpareName.removeUnchanged(path("source"), copied));
        assertFile("22", at("source"));
        Files.setLastModifiedTime(path("source"), FileTime.from(1, TimeUnit.SECONDS));
        copied = attributesOf(path("source"));
        assertTrue(SpareName.removeUnchanged(path("source"), copied));
        assertMissing(at("source"));
    }

    @Test
    void nothingIsRemovedOfWhatOthersHaveTaken() {
        assertThrows(NoSuchFileException.class, () -> SpareName.remove(path("missing"), path("other"), null));
    }

    /**
     * One process puts versions in place while another moves whatever is there. Set MOVE_RACE_SECONDS to run longer.
     */
    @Test
    void lastOfManyVersionsIsAlwaysSomewhere() throws Exception {
        StorageURI source = at("source");
        AtomicBoolean done = new AtomicBoolean();
        Thread mover = new Thread(() -> moveUntil(done, source));
        mover.start();
        long end = System.nanoTime() + TimeUnit.SECONDS.toNanos(SECONDS);
        int version = 0;
        while (System.nanoTime() < end) {
            put("v" + ++version, "source");
            put("v" + ++version, "source");
            awaitArrival("v" + version);
        }
        done.set(true);
        mover.join();
        System.out.println(version + " versions were moved, and none was lost");
    }

    private void moveUntil(AtomicBoolean done, StorageURI source) {
        for (int i = 0; !done.get(); i++) {
            try {
                provider.moveFile(source, at("target" + i), /* replace= */ false);
            } catch (ProviderException e) {
                // Usually there is none at that moment; what counts is that none is lost.
                assertTrue(Set.of(ErrorCode.NOT_FOUND, ErrorCode.IN_USE).contains(e.getErrorCode()), e.getMessage());
            }
        }
    }

    private void awaitArrival(String version) throws Exception {
        long deadline = System.nanoTime() + TimeUnit.SECONDS.toNanos(20);
        Optional<Path> found = Optional.empty();
        while (found.isEmpty()) {
            assertTrue(System.nanoTime() < deadline, () -> version + " is nowhere");
            found = targets().stream().filter(path -> version.equals(contentOf(path))).findAny();
        }
        for (Path target : targets()) {
            Files.delete(target);
        }
    }

    private Set<Path> targets() throws Exception {
        try (Stream<Path> all = Files.list(path())) {
            Set<Path> targets = new HashSet<>();
            all.filter(path -> path.getFileName().toString().startsWith("target")).forEach(targets::add);
            return targets;
        } catch (UncheckedIOException e) {
            throw e.getCause();
        }
    }

    private static String contentOf(Path path) {
        try {
            return read(path);
        } catch (IOException e) {
            return "";
        }
    }
}
