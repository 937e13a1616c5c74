package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** An archive refuses what it cannot do with open files, because it would silently lose or undo it. */
class ArchiveChannelsTest extends NioTestCase {
    ArchiveChannelsTest() {
        super(NioStorage::ofArchive);
    }

    private ProviderChannel open(StorageURI location) throws Exception {
        return provider.getChannel(location, /* create= */ false, /* truncate= */ false, /* exclusive= */ false);
    }

    @Test
    void oneWritesAtATime() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel writer = open(a)) {
            assertFails(ErrorCode.IN_USE, a, () -> open(a));
            ChannelText.write(writer, "HE");
        }
        open(a).close();
        assertFile("HEllo", a);
    }

    @Test
    void othersReadWhatWasThereMeanwhile() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel writer = open(a);
                ProviderChannel reader = provider.getReadOnlyChannel(a)) {
            ChannelText.write(writer, "HE");
            assertEquals("hello", ChannelText.read(reader));
        }
        try (ProviderChannel reader = provider.getReadOnlyChannel(a)) {
            assertEquals("HEllo", ChannelText.read(reader));
        }
    }

    @Test
    void fileThatIsWrittenIsNeitherRemovedNorMoved() throws Exception {
        folder("folder");
        StorageURI a = file("hello", "folder", "a");
        StorageURI b = file("b", "b");
        StorageURI folder = at("folder");
        try (ProviderChannel writer = open(a)) {
            assertFails(ErrorCode.IN_USE, a, () -> provider.removeFile(a));
            assertFails(ErrorCode.IN_USE, folder, () -> provider.removeFolderRecursively(folder));
            assertFails(ErrorCode.IN_USE, a, () -> provider.moveFile(a, at("c"), false));
            assertFails(ErrorCode.IN_USE, a, () -> provider.moveFile(b, a, /* replace= */ true));
            assertFails(ErrorCode.IN_USE, folder, () -> provider.moveFolder(folder, at("other"), false));
            ChannelText.write(writer, "HE");
        }
        assertFile("HEllo", a);
        assertFile("b", b);
        provider.removeFolderRecursively(folder);
        assertMissing(a);
    }

    @Test
    void fileThatIsReadIsRemovedAndMoved() throws Exception {
        StorageURI a = file("a", "a");
        StorageURI b = file("b", "b");
        try (ProviderChannel readerOfA = provider.getReadOnlyChannel(a);
                ProviderChannel readerOfB = provider.getReadOnlyChannel(b)) {
            provider.removeFile(a);
            provider.moveFile(b, at("c"), /* replace= */ false);
            assertEquals("a", ChannelText.read(readerOfA));
            assertEquals("b", ChannelText.read(readerOfB));
        }
        assertMissing(a);
        assertMissing(b);
        assertFile("b", at("c"));
    }

    @Test
    void whatIsOpenAtDisposalIsWritten() throws Exception {
        StorageURI a = file("hello", "a");
        ProviderChannel channel = open(a);
        ChannelText.write(channel, "HE");
        provider.dispose();
        assertFails(ErrorCode.UNAVAILABLE, a, channel::size);
        assertEquals("HEllo", read(path("a")));
    }
}
