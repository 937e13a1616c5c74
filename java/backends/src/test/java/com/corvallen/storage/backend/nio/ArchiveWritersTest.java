package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.concurrent.CompletableFuture;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.Timeout;

/** Two processes write one archive. */
class ArchiveWritersTest extends ArchiveCase {
    private static final StorageURI OTHER = new StorageURI("java://case/other");

    private static OtherProcess other() throws IOException {
        return new OtherProcess("C.UTF-8", "-D" + PROPERTY + "=" + System.getProperty(PROPERTY));
    }

    @Test
    void secondWriterIsRefusedAtItsFirstChange() throws Exception {
        try (OtherProcess other = other()) {
            assertEquals("ok", other.ask("create", OTHER));
            assertFails(ErrorCode.IN_USE, () -> provider.createFile(NEW));
            assertTrue(provider.fileExists(OLD));
            assertEquals("ok", other.ask("release", OTHER));
            assertEquals(Map.of("old", "there before", "other", ""), files());
            assertFails(ErrorCode.IN_USE, () -> provider.createFile(NEW));
            provider.close();
        }
        NioProvider next = new NioProvider();
        next.createFile(NEW);
        next.close();
        assertEquals(Map.of("old", "there before", "other", "", "new", ""), files());
    }

    @Test
    void readersAreNotDisturbed() throws Exception {
        try (OtherProcess other = other();
                ProviderChannel reader = provider.getReadOnlyChannel(OLD)) {
            assertEquals("ok", other.ask("create", OTHER));
            assertEquals("there before", ChannelText.read(reader));
            assertEquals("ok", other.ask("release", OTHER));
            assertTrue(provider.fileExists(OLD));
            try (ProviderChannel again = provider.getReadOnlyChannel(OLD)) {
                assertEquals("there before", ChannelText.read(again));
            }
        }
    }

    @Test
    void archiveThatAnotherProcessHasLockedIsLeftAlone() throws Exception {
        write(provider, NEW, "content");
        try (OtherProcess other = other()) {
            assertEquals("ok 0", other.ask("hold", new StorageURI("java://" + archive)));
            assertFails(ErrorCode.IN_USE, provider::close);
        }
        assertUntouched();
    }

    /** The system drops a process's lock when the process closes the file anywhere. */
    @Test
    void writerWhoseLockWasDroppedLosesToTheNext() throws Exception {
        write(provider, NEW, "content");
        Path draft = folder.resolve(".storage-archive-a.zip");
        Files.readAllBytes(draft);
        try (OtherProcess other = other()) {
            assertEquals("ok", other.ask("create", OTHER));
            assertFails(ErrorCode.IN_USE, provider::close);
            assertTrue(Files.exists(draft), "it is the other's");
            assertEquals("ok", other.ask("release", OTHER));
        }
        assertEquals(Map.of("old", "there before", "other", ""), files());
        assertEquals(Set.of("a.zip"), names());
    }

    @Test
    void killedWriterLeavesOneFileThatTheNextRemoves() throws Exception {
        OtherProcess killed = other();
        assertEquals("ok", killed.ask("create", OTHER));
        killed.kill();
        assertEquals(Set.of("a.zip", ".storage-archive-a.zip"), names());
        write(provider, NEW, "content");
        provider.close();
        assertEquals(Map.of("old", "there before", "new", "content"), files());
        assertEquals(Set.of("a.zip"), names());
    }

    /** Set ARCHIVE_RUNS=1000 for the long form. */
    @Test
    @Timeout(1800)
    void ofTwoWritersOneWinsAndNothingThatSucceededIsLost() throws Exception {
        String runs = System.getenv("ARCHIVE_RUNS");
        Map<String, Integer> outcomes = new TreeMap<>();
        try (OtherProcess other = other()) {
            for (int run = 0; run < (runs == null ? 20 : Integer.parseInt(runs)); run++) {
                holding(archive, "old", "there before");
                CompletableFuture<String> theirs = CompletableFuture.supplyAsync(() -> put(other));
                String mine = put();
                outcomes.merge(mine + ", " + theirs.join(), 1, Integer::sum);
                Map<String, String> expected = new TreeMap<>(Map.of("old", "there before"));
                if (mine.equals("ok")) {
                    expected.put("new", "");
                }
                if (theirs.join().equals("ok")) {
                    expected.put("other", "");
                }
                assertTrue(expected.size() > 1, outcomes::toString);
                assertEquals(expected, files());
                assertEquals(Set.of("a.zip"), names());
            }
        }
        System.out.println("this process, the other: " + outcomes);
        outcomes.keySet().forEach(outcome -> assertTrue(outcome.matches("(ok|IN_USE), (ok|IN_USE)"), outcome));
    }

    private static String put(OtherProcess other) {
        try {
            return other.ask("put", OTHER);
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    private static String put() {
        try {
            OtherProcess.put(NEW);
            return "ok";
        } catch (ProviderException e) {
            return e.getErrorCode().name();
        }
    }
}
