package com.corvallen.storage.example;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import java.nio.ByteBuffer;
import java.nio.charset.StandardCharsets;
import java.util.Arrays;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;

class SystemPropertiesProviderTest {
    private static final StorageURI ROOT = new StorageURI("java:///");
    private static final StorageURI GREETING = new StorageURI("java:///example%20greeting");
    private static final StorageURI MISSING = new StorageURI("java:///example.missing");

    private final StorageProvider provider = new SystemPropertiesProvider();

    @BeforeEach
    void setProperty() {
        System.setProperty("example greeting", "hällo");
    }

    @AfterEach
    void clearProperty() {
        System.clearProperty("example greeting");
    }

    private static void assertFails(ErrorCode code, Executable operation) {
        assertEquals(code, assertThrows(ProviderException.class, operation).getErrorCode());
    }

    @Test
    void propertyIsAFile() throws ProviderException {
        assertTrue(provider.fileExists(GREETING));
        assertFalse(provider.folderExists(GREETING));
        assertFalse(provider.fileExists(MISSING));
        assertFalse(provider.fileExists(ROOT));
        assertTrue(provider.folderExists(ROOT));
        assertEquals(new FileAttributes(6, 0, false), provider.getFileAttributes(GREETING));
    }

    @Test
    void propertiesAreListed() throws ProviderException {
        FolderListEntry entry = new FolderListEntry("example greeting", false);
        assertTrue(Arrays.asList(provider.listFolder(ROOT)).contains(entry));
    }

    @Test
    void valueIsRead() throws ProviderException {
        ByteBuffer buffer = ByteBuffer.allocate(4);
        try (ProviderChannel channel = provider.getReadOnlyChannel(GREETING)) {
            assertEquals(6, channel.size());
            assertEquals(4, channel.read(buffer));
            assertEquals(4, channel.position());
            channel.position(3);
            buffer.clear();
            assertEquals(3, channel.read(buffer));
            assertEquals(-1, channel.read(buffer));
        }
        assertArrayEquals("llo".getBytes(StandardCharsets.UTF_8), Arrays.copyOf(buffer.array(), 3));
    }

    @Test
    void channelKeepsTheContract() throws ProviderException {
        ProviderChannel channel = provider.getReadOnlyChannel(GREETING);
        assertFails(ErrorCode.ACCESS_DENIED, () -> channel.write(ByteBuffer.allocate(1)));
        assertFails(ErrorCode.INVALID_LOCATION, () -> channel.position(-1));
        channel.position(Long.MAX_VALUE);
        assertEquals(-1, channel.read(ByteBuffer.allocate(1)));
        channel.close();
        channel.close();
        assertFails(ErrorCode.UNAVAILABLE, channel::size);
        assertFails(ErrorCode.UNAVAILABLE, channel::position);
        assertFails(ErrorCode.UNAVAILABLE, () -> channel.read(ByteBuffer.allocate(1)));
    }

    @Test
    void wrongTypeAndMissingAreToldApart() {
        assertFails(ErrorCode.NOT_FOUND, () -> provider.getFileAttributes(MISSING));
        assertFails(ErrorCode.NOT_A_FILE, () -> provider.getFileAttributes(ROOT));
        assertFails(ErrorCode.NOT_FOUND, () -> provider.getFolderAttributes(MISSING));
        assertFails(ErrorCode.NOT_A_FOLDER, () -> provider.listFolder(GREETING));
        assertFails(ErrorCode.NOT_FOUND, () -> provider.getReadOnlyChannel(MISSING));
        assertFails(ErrorCode.NOT_A_FILE, () -> provider.getReadOnlyChannel(ROOT));
    }

    @Test
    void changesAreNotSupported() {
        assertFails(ErrorCode.NOT_SUPPORTED, () -> provider.removeFile(GREETING));
        assertFails(ErrorCode.NOT_SUPPORTED, () -> provider.createFile(MISSING));
    }
}
