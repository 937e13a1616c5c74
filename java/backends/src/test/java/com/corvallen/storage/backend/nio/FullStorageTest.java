package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderStorageInfo;
import com.corvallen.storage.provider.StorageURI;
import com.google.common.jimfs.Configuration;
import java.nio.ByteBuffer;
import org.junit.jupiter.api.Test;

/** A storage with room for ten blocks. */
class FullStorageTest extends NioTestCase {
    private static final int CAPACITY = 10_000;

    FullStorageTest() {
        super(FullStorageTest::open);
    }

    private static NioStorage open() throws Exception {
        return NioStorage.ofMemory(
                Configuration.unix().toBuilder().setBlockSize(1000).setMaxSize(CAPACITY).build());
    }

    @Test
    void writingStopsWhenItIsFull() throws Exception {
        StorageURI a = file("", "a");
        try (ProviderChannel channel = provider.getChannel(a, false, false, false)) {
            assertFails(ErrorCode.STORAGE_FULL, a, () -> {
                while (channel.position() <= CAPACITY) {
                    channel.write(ByteBuffer.allocateDirect(700));
                }
            });
            assertTrue(channel.size() > 0);
            channel.position(0);
            ChannelText.write(channel, "still");
            channel.position(0);
            assertEquals('s', ChannelText.read(channel).charAt(0));
        }
        provider.removeFile(a);
        assertFile("x", file("x", "b"));
    }

    @Test
    void spaceIsCounted() throws Exception {
        assertEquals(new ProviderStorageInfo(CAPACITY, 0), provider.getProviderStorageInfo(at()));
        file("x".repeat(2500), "a");
        assertEquals(new ProviderStorageInfo(CAPACITY, 3000), provider.getProviderStorageInfo(at()));
    }
}
