package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code getReadOnlyChannel}. */
public abstract class GetReadOnlyChannelContract extends OperationContract {
    protected GetReadOnlyChannelContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void contentIsRead() throws Exception {
        StorageURI a = file("hällo", "a");
        try (ProviderChannel channel = provider.getReadOnlyChannel(a)) {
            assertEquals(0, channel.position());
            assertEquals(6, channel.size());
            assertEquals("hällo", ChannelText.read(channel));
        }
    }

    @Test
    void writingIsDenied() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel channel = provider.getReadOnlyChannel(a)) {
            assertFails(ErrorCode.ACCESS_DENIED, a, () -> channel.write(ChannelText.direct("x")));
            assertEquals(0, channel.position());
        }
        assertFile("hello", a);
    }

    @Test
    void severalReadAtTheSameTime() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel first = provider.getReadOnlyChannel(a);
                ProviderChannel second = provider.getReadOnlyChannel(a)) {
            first.position(3);
            assertEquals("hello", ChannelText.read(second));
            assertEquals("lo", ChannelText.read(first));
        }
    }

    @Test
    void missingIsNotFound() throws Exception {
        StorageURI a = at("a");
        StorageURI below = at("missing", "a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.getReadOnlyChannel(a));
        assertFails(ErrorCode.NOT_FOUND, below, () -> provider.getReadOnlyChannel(below));
        assertMissing(a);
    }

    @Test
    void folderIsNotAFile() throws Exception {
        StorageURI a = folder("a");
        assertFails(ErrorCode.NOT_A_FILE, a, () -> provider.getReadOnlyChannel(a));
    }
}
