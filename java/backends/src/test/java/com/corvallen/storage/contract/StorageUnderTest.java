package com.corvallen.storage.contract;

import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import java.nio.ByteBuffer;
import java.nio.charset.StandardCharsets;

/** A storage, opened anew for each test: a provider, and the root of an empty storage. */
public interface StorageUnderTest {
    /** Returns the provider to test; the test disposes of it. */
    StorageProvider provider();

    /** Returns the root of the storage. It exists, is empty and is writable. */
    StorageURI root();

    /** Returns whether the root is the top of the storage, which cannot be removed or moved, or a folder in it. */
    default boolean rootIsTop() {
        return true;
    }

    /** Writes a text to an existing file. */
    default void write(StorageURI file, String content) throws Exception {
        try (ProviderChannel channel = provider().getChannel(file, false, true, false)) {
            ByteBuffer bytes = ByteBuffer.wrap(content.getBytes(StandardCharsets.UTF_8));
            while (bytes.hasRemaining()) {
                channel.write(bytes);
            }
        }
    }

    /** Returns the whole content of a file as text. */
    default String read(StorageURI file) throws Exception {
        try (ProviderChannel channel = provider().getReadOnlyChannel(file)) {
            ByteBuffer bytes = ByteBuffer.allocate(Math.toIntExact(channel.size()));
            while (bytes.hasRemaining() && channel.read(bytes) >= 0) {
                continue;
            }
            return new String(bytes.array(), 0, bytes.position(), StandardCharsets.UTF_8);
        }
    }

    /** Returns the number of entries in a folder, to find what an operation has left behind. */
    default int countEntries(StorageURI folder) throws Exception {
        return provider().listFolder(folder).length;
    }

    /** Undoes what opening the storage did. Called after the provider is disposed of. */
    default void close() throws Exception {}

    /** Opens a storage. */
    @FunctionalInterface
    interface Opener {
        /** Returns a storage that no other test uses. */
        StorageUnderTest open() throws Exception;
    }

    /** Disposes of the provider, then closes. */
    default void tearDown() throws Exception {
        provider().dispose();
        close();
    }

    /** Returns a location in the storage by its names. */
    default StorageURI at(String... names) throws ProviderException {
        StorageURI location = root();
        for (String name : names) {
            location = location.resolve(name);
        }
        return location;
    }
}
