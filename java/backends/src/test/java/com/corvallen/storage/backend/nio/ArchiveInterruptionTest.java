package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.StorageURI;
import java.util.Map;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;

/** An interrupted thread gives up its operation, but the archive and everything written to it before stay. */
class ArchiveInterruptionTest extends ArchiveCase {
    private static final Map<String, String> BOTH = Map.of("old", "there before", "new", "written before");

    @AfterEach
    void forget() {
        Thread.interrupted();
    }

    @Test
    void archiveOutlivesAMoveThatIsGivenUp() throws Exception {
        write(provider, NEW, "written before");
        StorageURI outside = new StorageURI("java://" + folder.resolve("outside").toUri().getRawPath());
        for (StorageURI inside : new StorageURI[] {OLD, NEW}) {
            Thread.currentThread().interrupt();
            assertFails(ErrorCode.UNAVAILABLE, () -> provider.moveFile(inside, outside, /* replace= */ false));
            assertTrue(Thread.interrupted(), "the thread does not know any more that it was interrupted");
        }
        provider.close();
        assertEquals(BOTH, files());
    }

    @Test
    void interruptedThreadReadsAndWritesAsAnyOther() throws Exception {
        Thread.currentThread().interrupt();
        write(provider, NEW, "written before");
        try (ProviderChannel channel = provider.getReadOnlyChannel(OLD)) {
            assertEquals("there before", ChannelText.read(channel));
        }
        assertTrue(Thread.interrupted(), "the thread does not know any more that it was interrupted");
        provider.close();
        assertEquals(BOTH, files());
    }

    @Test
    void interruptedThreadEndsTheArchive() throws Exception {
        write(provider, NEW, "written before");
        Thread.currentThread().interrupt();
        provider.close();
        assertTrue(Thread.interrupted(), "the thread does not know any more that it was interrupted");
        assertEquals(BOTH, files());
    }
}
