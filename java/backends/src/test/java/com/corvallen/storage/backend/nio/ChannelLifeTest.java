package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTimeoutPreemptively;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.channels.FileChannel;
import java.nio.channels.FileLock;
import java.nio.file.Files;
import java.nio.file.StandardOpenOption;
import java.time.Duration;
import org.junit.jupiter.api.Test;

/** How long an open file on disk keeps others out, and what ends it. */
class ChannelLifeTest extends NioTestCase {
    ChannelLifeTest() {
        super(NioStorage::ofFolder);
    }

    private ProviderChannel openExclusively(StorageURI location) throws ProviderException {
        return provider.getChannel(location, /* create= */ false, /* truncate= */ false, /* exclusive= */ true);
    }

    private void openAndForget(StorageURI location) throws ProviderException {
        ChannelText.write(openExclusively(location), "HE");
    }

    private boolean isFree(StorageURI location) throws ProviderException {
        try {
            openExclusively(location).close();
            return true;
        } catch (ProviderException e) {
            assertEquals(ErrorCode.IN_USE, e.getErrorCode());
            return false;
        }
    }

    @Test
    void forgottenChannelIsReleased() throws Exception {
        StorageURI a = file("hello", "a");
        openAndForget(a);
        assertTimeoutPreemptively(Duration.ofSeconds(30), () -> {
            while (!isFree(a)) {
                System.gc();
                Thread.yield();
            }
        });
        assertFile("HEllo", a);
    }

    @Test
    void disposalFreesTheFileForOtherProviders() throws Exception {
        StorageURI a = file("hello", "a");
        ProviderChannel channel = openExclusively(a);
        NioProvider other = new NioProvider();
        try {
            assertFails(ErrorCode.IN_USE, a, () -> other.getReadOnlyChannel(a));
            provider.dispose();
            other.getReadOnlyChannel(a).close();
            channel.close();
        } finally {
            other.dispose();
        }
    }

    @Test
    void hardLinksAreOneFile() throws Exception {
        StorageURI a = file("hello", "a");
        Files.createLink(path("b"), path("a"));
        StorageURI b = at("b");
        try (ProviderChannel channel = openExclusively(a)) {
            assertFails(ErrorCode.IN_USE, b, () -> provider.getReadOnlyChannel(b));
            assertEquals(5, channel.size());
        }
        provider.getReadOnlyChannel(b).close();
    }

    @Test
    void lockOfOtherCodeKeepsExclusiveChannelsOff() throws Exception {
        StorageURI a = file("hello", "a");
        try (FileChannel foreign = FileChannel.open(path("a"), StandardOpenOption.WRITE);
                FileLock lock = foreign.lock()) {
            assertFails(ErrorCode.IN_USE, a, () -> openExclusively(a));
            assertEquals(true, lock.isValid());
        }
        openExclusively(a).close();
    }

    @Test
    void openFileIsRemovedAndMoved() throws Exception {
        StorageURI a = file("a", "a");
        StorageURI b = file("b", "b");
        try (ProviderChannel channelOfA = openExclusively(a);
                ProviderChannel channelOfB = openExclusively(b)) {
            provider.removeFile(a);
            provider.moveFile(b, at("c"), /* replace= */ false);
            ChannelText.write(channelOfA, "x");
            ChannelText.write(channelOfB, "y");
        }
        assertMissing(a);
        assertFile("y", at("c"));
    }

    @Test
    void newFileOfTheSameNameIsFree() throws Exception {
        StorageURI a = file("old", "a");
        try (ProviderChannel channel = openExclusively(a)) {
            provider.removeFile(a);
            file("new", "a");
            openExclusively(a).close();
            assertEquals("old", ChannelText.read(channel));
        }
    }

    @Test
    void deviceIsNotOpened() {
        StorageURI device = new StorageURI("java:///dev/null");
        assertFails(ErrorCode.NOT_SUPPORTED, device, () -> provider.getReadOnlyChannel(device));
        assertFails(ErrorCode.NOT_SUPPORTED, device, () -> provider.getChannel(device, true, true, false));
    }

    @Test
    void fileMayBeLongerThanAnInt() throws Exception {
        StorageURI a = file("", "a");
        long far = 5L << 30;
        try (ProviderChannel channel = provider.getChannel(a, false, false, false)) {
            channel.position(far);
            ChannelText.write(channel, "end");
            assertEquals(far + 3, channel.size());
            channel.position(far);
            assertEquals("end", ChannelText.read(channel));
        }
        assertEquals(far + 3, provider.getFileAttributes(a).getSize());
    }
}
