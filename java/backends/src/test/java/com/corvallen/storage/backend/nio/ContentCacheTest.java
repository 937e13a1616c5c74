package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.ByteBuffer;
import java.nio.file.Files;
import java.util.Collections;
import java.util.HashMap;
import org.junit.jupiter.api.Nested;
import org.junit.jupiter.api.Test;

/** When small files are read from memory, and when they are not. */
class ContentCacheTest {
    private static HashMap<String, String> setting(String value) {
        HashMap<String, String> settings = new HashMap<>();
        settings.put("gds.enableContentCache", value);
        return settings;
    }

    /** Cases for file systems that can tell one file from another. */
    abstract static class Cases extends NioTestCase {
        private static final long PAST = 1_700_000_000_000L;

        Cases(StorageUnderTest.Opener opener) {
            super(opener);
        }

        private ContentCache cache() {
            return ((NioProvider) provider).cache();
        }

        private void enable(String value) throws ProviderException {
            provider.configure(setting(value));
        }

        /** Makes a file that has not changed for long. */
        private StorageURI settled(String content, String name) throws Exception {
            StorageURI location = at(name);
            if (!provider.fileExists(location)) {
                provider.createFile(location);
            }
            storage.write(location, content);
            provider.setLastModified(location, PAST);
            return location;
        }

        private String readThrough(StorageURI location) throws ProviderException {
            try (ProviderChannel channel = provider.getReadOnlyChannel(location)) {
                return ChannelText.read(channel);
            }
        }

        private void assertCounts(long hits, long misses) {
            assertEquals(hits, cache().hits(), "hits");
            assertEquals(misses, cache().misses(), "misses");
        }

        @Test
        void nothingIsKeptUnlessItIsSwitchedOn() throws Exception {
            StorageURI a = settled("hello", "a");
            assertEquals("hello", readThrough(a));
            assertEquals("hello", readThrough(a));
            assertCounts(0, 0);
            assertEquals(0, cache().count());
        }

        @Test
        void secondReadingComesFromMemory() throws Exception {
            enable("true");
            StorageURI a = settled("hello", "a");
            assertEquals("hello", readThrough(a));
            assertCounts(0, 1);
            assertEquals("hello", readThrough(a));
            assertEquals("hello", readThrough(a));
            assertCounts(2, 1);
            assertEquals(5, cache().size());
        }

        @Test
        void keptFileIsAChannelLikeAnyOther() throws Exception {
            enable("true");
            StorageURI a = settled("hello", "a");
            readThrough(a);
            ProviderChannel channel = provider.getReadOnlyChannel(a);
            assertCounts(1, 1);
            assertEquals(5, channel.size());
            channel.position(3);
            assertEquals("lo", ChannelText.read(channel));
            channel.position(1000);
            assertEquals(-1, channel.read(ByteBuffer.allocateDirect(1)));
            assertFails(ErrorCode.INVALID_LOCATION, a, () -> channel.position(-1));
            assertFails(ErrorCode.ACCESS_DENIED, a, () -> channel.write(ChannelText.direct("x")));
            assertFails(ErrorCode.IN_USE, a, () -> provider.getChannel(a, false, false, /* exclusive= */ true));
            channel.close();
            channel.close();
            assertFails(ErrorCode.UNAVAILABLE, a, channel::size);
            assertFails(ErrorCode.UNAVAILABLE, a, () -> channel.read(ByteBuffer.allocateDirect(1)));
            provider.getChannel(a, false, false, /* exclusive= */ true).close();
        }

        @Test
        void changedFileIsReadAgain() throws Exception {
            enable("true");
            StorageURI a = settled("hello", "a");
            readThrough(a);
            storage.write(a, "HELLO");
            assertEquals("HELLO", readThrough(a));
            settled("longer than before", "a");
            assertEquals("longer than before", readThrough(a));
            assertCounts(0, 3);
        }

        @Test
        void writingThroughAChannelDropsWhatWasKept() throws Exception {
            enable("true");
            StorageURI a = settled("hello", "a");
            readThrough(a);
            try (ProviderChannel writer = provider.getChannel(a, false, false, false)) {
                assertEquals(0, cache().count());
                ChannelText.write(writer, "HE");
            }
            provider.setLastModified(a, PAST);
            assertEquals("HEllo", readThrough(a));
        }

        @Test
        void fileThatIsBeingWrittenIsNotKept() throws Exception {
            enable("true");
            StorageURI a = settled("hello", "a");
            try (ProviderChannel writer = provider.getChannel(a, false, false, false)) {
                assertEquals("hello", readThrough(a));
                assertEquals(0, cache().count());
                assertEquals(5, writer.size());
            }
        }

        @Test
        void fileThatHasJustChangedIsNotKept() throws Exception {
            enable("true");
            StorageURI a = file("hello", "a");
            provider.setLastModified(a, System.currentTimeMillis());
            assertEquals("hello", readThrough(a));
            assertEquals(0, cache().count());
        }

        @Test
        void largeFileIsNotKept() throws Exception {
            enable("true");
            StorageURI limit = settled("x".repeat(ContentCache.MAX_FILE_SIZE), "limit");
            StorageURI large = settled("x".repeat(ContentCache.MAX_FILE_SIZE + 1), "large");
            readThrough(limit);
            readThrough(large);
            assertEquals(1, cache().count());
            assertEquals(ContentCache.MAX_FILE_SIZE, cache().size());
        }

        @Test
        void whatWasNotAskedForLongestGoesFirst() throws Exception {
            enable("true");
            String content = "x".repeat(ContentCache.MAX_FILE_SIZE);
            int room = (int) (ContentCache.MAX_TOTAL_SIZE / ContentCache.MAX_FILE_SIZE);
            for (int i = 0; i < room; i++) {
                provider.getReadOnlyChannel(settled(content, "file" + i)).close();
            }
            assertEquals(ContentCache.MAX_TOTAL_SIZE, cache().size());
            provider.getReadOnlyChannel(at("file0")).close();
            assertCounts(1, room);
            provider.getReadOnlyChannel(settled(content, "oneMore")).close();
            assertEquals(ContentCache.MAX_TOTAL_SIZE, cache().size());
            provider.getReadOnlyChannel(at("file0")).close();
            assertCounts(2, room + 1);
            provider.getReadOnlyChannel(at("file1")).close();
            assertCounts(2, room + 2);
        }

        @Test
        void switchingOffForgetsEverything() throws Exception {
            enable("true");
            StorageURI a = settled("hello", "a");
            readThrough(a);
            enable("false");
            assertEquals(0, cache().count());
            assertEquals(0, cache().size());
            readThrough(a);
            assertCounts(0, 1);
        }

        @Test
        void removedFileIsGone() throws Exception {
            enable("true");
            StorageURI a = settled("hello", "a");
            readThrough(a);
            provider.removeFile(a);
            assertFails(ErrorCode.NOT_FOUND, a, () -> provider.getReadOnlyChannel(a));
        }

        @Test
        void manyReadersAndOneWriterSeeWholeContents() throws Exception {
            enable("true");
            StorageURI a = settled("0".repeat(100), "a");
            assertEquals(Collections.nCopies(4, null), atTheSameTime(4, number -> {
                for (int round = 0; round < 50; round++) {
                    if (number > 0) {
                        String read = readThrough(a);
                        assertTrue(read.length() == 100 && read.chars().allMatch(c -> c == read.charAt(0)), read);
                    } else {
                        settledAtOnce(a, round % 10);
                    }
                }
            }));
        }

        private void settledAtOnce(StorageURI a, int digit) throws Exception {
            StorageURI fresh = settled(String.valueOf(digit).repeat(100), "fresh");
            provider.setLastModified(fresh, PAST + digit * 10_000);
            provider.moveFile(fresh, a, /* replace= */ true);
        }
    }

    @Nested
    class OnDisk extends Cases {
        OnDisk() {
            super(NioStorage::ofFolder);
        }

        /** The system may give the new file the key of the old one. */
        @Test
        void otherFileUnderTheSameNameIsReadAgain() throws Exception {
            provider.configure(setting("true"));
            for (String content : new String[] {"hello", "world", "HELLO", "WORLD"}) {
                Files.deleteIfExists(path("a"));
                StorageURI a = file(content, "a");
                provider.setLastModified(a, 1_700_000_000_000L);
                try (ProviderChannel channel = provider.getReadOnlyChannel(a)) {
                    assertEquals(content, ChannelText.read(channel));
                }
                assertEquals(1, ((NioProvider) provider).cache().count());
            }
        }
    }

    @Nested
    class InMemory extends Cases {
        InMemory() {
            super(NioStorage::ofMemory);
        }
    }

    @Nested
    class InAnArchive extends NioTestCase {
        InAnArchive() {
            super(NioStorage::ofArchive);
        }

        @Test
        void nothingIsKept() throws Exception {
            provider.configure(setting("true"));
            for (String content : new String[] {"hello", "world"}) {
                StorageURI fresh = file(content, "fresh");
                provider.setLastModified(fresh, 1_700_000_000_000L);
                provider.moveFile(fresh, at("a"), /* replace= */ true);
                try (ProviderChannel channel = provider.getReadOnlyChannel(at("a"))) {
                    assertEquals(content, ChannelText.read(channel));
                }
            }
            assertEquals(0, ((NioProvider) provider).cache().count());
        }
    }
}
