package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.StorageURI;
import java.nio.ByteBuffer;
import java.util.Collections;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** The cases of an open channel. */
public abstract class ChannelContract extends OperationContract {
    private static final int RECORD = 64;

    protected ChannelContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    private ProviderChannel open(StorageURI location, boolean writable) throws Exception {
        return writable
                ? provider.getChannel(location, false, false, false)
                : provider.getReadOnlyChannel(location);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void readingMovesOnToTheEnd(boolean writable) throws Exception {
        try (ProviderChannel channel = open(file("hello", "a"), writable)) {
            ByteBuffer buffer = ByteBuffer.allocateDirect(3);
            assertEquals(3, channel.read(buffer));
            assertEquals(3, channel.position());
            buffer.clear();
            assertEquals(2, channel.read(buffer));
            assertEquals(-1, channel.read(buffer));
            assertEquals(5, channel.position());
        }
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void bufferIsFilledFromItsPositionToItsLimit(boolean writable) throws Exception {
        try (ProviderChannel channel = open(file("hello", "a"), writable)) {
            ByteBuffer buffer = ByteBuffer.allocateDirect(8).position(2).limit(5);
            assertEquals(3, channel.read(buffer));
            assertEquals(5, buffer.position());
            buffer.clear();
            assertEquals('h', buffer.get(2));
            assertEquals(0, buffer.get(1));
            assertEquals(0, buffer.get(5));
        }
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void emptyFileEndsAtOnce(boolean writable) throws Exception {
        try (ProviderChannel channel = open(file("", "a"), writable)) {
            assertEquals(-1, channel.read(ByteBuffer.allocateDirect(1)));
            assertEquals(0, channel.size());
        }
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void positionIsSet(boolean writable) throws Exception {
        try (ProviderChannel channel = open(file("hello", "a"), writable)) {
            channel.position(3);
            assertEquals(3, channel.position());
            assertEquals("lo", ChannelText.read(channel));
            channel.position(0);
            assertEquals("hello", ChannelText.read(channel));
        }
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void readingAfterTheEndMeetsTheEnd(boolean writable) throws Exception {
        try (ProviderChannel channel = open(file("hello", "a"), writable)) {
            channel.position(1000);
            assertEquals(1000, channel.position());
            assertEquals(-1, channel.read(ByteBuffer.allocateDirect(1)));
            assertEquals(5, channel.size());
        }
    }

    @ParameterizedTest
    @ValueSource(longs = {1L << 53, Long.MAX_VALUE - 2, Long.MAX_VALUE})
    void noPositionIsTooFar(long far) throws Exception {
        StorageURI a = file("hello", "a");
        for (boolean writable : new boolean[] {false, true}) {
            try (ProviderChannel channel = open(a, writable)) {
                channel.position(far);
                assertEquals(far, channel.position());
                assertEquals(-1, channel.read(ByteBuffer.allocateDirect(10)));
                assertEquals(far, channel.position());
                channel.position(1);
                assertEquals("ello", ChannelText.read(channel));
            }
        }
    }

    @ParameterizedTest
    @ValueSource(longs = {Long.MAX_VALUE - 2, Long.MAX_VALUE})
    void fileThatCannotBeSoLongIsFull(long far) throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel channel = open(a, /* writable= */ true)) {
            channel.position(far);
            assertFails(ErrorCode.STORAGE_FULL, a, () -> channel.write(ChannelText.direct("1234567890")));
            assertEquals(far, channel.position());
            assertEquals(5, channel.size());
            channel.position(5);
            ChannelText.write(channel, "!");
        }
        assertFile("hello!", a);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void negativePositionIsInvalid(boolean writable) throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel channel = open(a, writable)) {
            channel.position(2);
            assertFails(ErrorCode.INVALID_LOCATION, a, () -> channel.position(-1));
            assertFails(ErrorCode.INVALID_LOCATION, a, () -> channel.position(Long.MIN_VALUE));
            assertEquals(2, channel.position());
        }
    }

    @Test
    void writingAfterTheEndLeavesZeros() throws Exception {
        StorageURI a = file("ab", "a");
        try (ProviderChannel channel = open(a, /* writable= */ true)) {
            channel.position(5);
            ChannelText.write(channel, "c");
            assertEquals(6, channel.position());
            assertEquals(6, channel.size());
        }
        assertFile("ab\0\0\0c", a);
    }

    @Test
    void writingAtTheEndMakesTheFileLonger() throws Exception {
        StorageURI a = file("ab", "a");
        try (ProviderChannel channel = open(a, /* writable= */ true)) {
            channel.position(channel.size());
            ChannelText.write(channel, "cd");
            channel.position(1);
            assertEquals("bcd", ChannelText.read(channel));
        }
        assertFile("abcd", a);
    }

    @Test
    void writtenBytesOfTheBufferStayAsTheyAre() throws Exception {
        try (ProviderChannel channel = open(file("", "a"), /* writable= */ true)) {
            ByteBuffer source = ChannelText.direct("hello");
            assertEquals(5, channel.write(source));
            assertEquals(ChannelText.direct("hello"), source.flip());
        }
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void closedChannelIsUnavailable(boolean writable) throws Exception {
        StorageURI a = file("hello", "a");
        ProviderChannel channel = open(a, writable);
        channel.close();
        channel.close();
        assertFails(ErrorCode.UNAVAILABLE, a, () -> channel.read(ByteBuffer.allocateDirect(1)));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> channel.write(ChannelText.direct("x")));
        assertFails(ErrorCode.UNAVAILABLE, a, channel::position);
        assertFails(ErrorCode.UNAVAILABLE, a, () -> channel.position(0));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> channel.position(-1));
        assertFails(ErrorCode.UNAVAILABLE, a, channel::size);
        assertFile("hello", a);
    }

    @Test
    void disposalClosesTheChannel() throws Exception {
        StorageURI a = file("hello", "a");
        ProviderChannel reader = provider.getReadOnlyChannel(a);
        provider.dispose();
        assertFails(ErrorCode.UNAVAILABLE, a, () -> reader.read(ByteBuffer.allocateDirect(1)));
        reader.close();
    }

    @Test
    void recordsOfSeveralThreadsStayWhole() throws Exception {
        StorageURI a = file("", "a");
        try (ProviderChannel channel = open(a, /* writable= */ true)) {
            assertEquals(Collections.nCopies(4, null), atTheSameTime(4, number -> {
                String record = String.valueOf((char) ('a' + number)).repeat(RECORD);
                for (int round = 0; round < 50; round++) {
                    assertEquals(RECORD, channel.write(ChannelText.direct(record)));
                }
            }));
            assertEquals(4 * 50 * RECORD, channel.size());
        }
        String content = storage.read(a);
        for (int at = 0; at < content.length(); at += RECORD) {
            String record = content.substring(at, at + RECORD);
            assertTrue(record.chars().allMatch(c -> c == record.charAt(0)), record);
        }
    }
}
