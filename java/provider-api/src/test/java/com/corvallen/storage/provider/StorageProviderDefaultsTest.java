package com.corvallen.storage.provider;

import static com.corvallen.storage.provider.Assertions.assertFails;
import static org.junit.jupiter.api.Assertions.assertDoesNotThrow;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import java.util.HashMap;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.MethodSource;

/** What a back end does that implements only the six methods without a default. */
class StorageProviderDefaultsTest {
    private static final StorageURI PLACE = new StorageURI("java:///a");
    private static final StorageProvider EMPTY = new EmptyProvider();

    private static final class EmptyProvider implements StorageProvider {
        @Override
        public boolean fileExists(StorageURI location) {
            return false;
        }

        @Override
        public boolean folderExists(StorageURI location) {
            return false;
        }

        @Override
        public FileAttributes getFileAttributes(StorageURI location) throws ProviderException {
            throw new ProviderException(ErrorCode.NOT_FOUND, location);
        }

        @Override
        public FolderAttributes getFolderAttributes(StorageURI location) throws ProviderException {
            throw new ProviderException(ErrorCode.NOT_FOUND, location);
        }

        @Override
        public FolderListEntry[] listFolder(StorageURI location) throws ProviderException {
            throw new ProviderException(ErrorCode.NOT_FOUND, location);
        }

        @Override
        public ProviderChannel getReadOnlyChannel(StorageURI location) throws ProviderException {
            throw new ProviderException(ErrorCode.NOT_FOUND, location);
        }
    }

    static Stream<Executable> refusedOperations() {
        return Stream.of(
                () -> EMPTY.createFile(PLACE),
                () -> EMPTY.createFolder(PLACE),
                () -> EMPTY.removeFile(PLACE),
                () -> EMPTY.removeFolder(PLACE),
                () -> EMPTY.removeFolderRecursively(PLACE),
                () -> EMPTY.moveFile(PLACE, PLACE, true),
                () -> EMPTY.moveFolder(PLACE, PLACE, true),
                () -> EMPTY.setLastModified(PLACE, 0),
                () -> EMPTY.getChannel(PLACE, true, true, true),
                () -> EMPTY.publishEventsFor(PLACE, new NativePublisher(0)),
                () -> EMPTY.getExtendedAttributes(PLACE),
                () -> EMPTY.getProviderStorageInfo(PLACE));
    }

    @ParameterizedTest
    @MethodSource("refusedOperations")
    void whatIsNotImplementedIsRefused(Executable operation) {
        assertEquals("java:///a", assertFails(ErrorCode.NOT_SUPPORTED, operation).getLocationString());
    }

    @Test
    void noFeatureIsClaimed() {
        for (ExtendedFeature feature : ExtendedFeature.values()) {
            assertFalse(EMPTY.hasFeature(feature));
        }
    }

    @Test
    void whereThereIsNothingToDoNothingFails() {
        assertDoesNotThrow(() -> EMPTY.stopPublishingEventsFor(PLACE));
        assertDoesNotThrow(() -> EMPTY.configure(new HashMap<>()));
        assertDoesNotThrow(EMPTY::dispose);
    }
}
