package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.params.provider.Arguments.arguments;

import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.StorageProvider;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.FileTime;
import java.util.stream.Stream;
import org.junit.jupiter.api.Timeout;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.Arguments;
import org.junit.jupiter.params.provider.MethodSource;

/** A move keeps the time of last modification. */
@Timeout(60)
class MoveKeepsTimesTest {
    private static final FileTime TIME = FileTime.fromMillis(1_000_000_000_000L);

    static Stream<Arguments> storages() {
        return Stream.of(
                arguments("folder", (StorageUnderTest.Opener) NioStorage::ofFolder),
                arguments("archive", (StorageUnderTest.Opener) NioStorage::ofArchive),
                arguments("memory", (StorageUnderTest.Opener) NioStorage::ofMemory));
    }

    private static void assertTime(Path path) throws Exception {
        assertEquals(TIME.toMillis(), Files.getLastModifiedTime(path).toMillis());
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("storages")
    void timeIsKept(String kind, StorageUnderTest.Opener opener) throws Exception {
        NioStorage storage = (NioStorage) opener.open();
        StorageProvider provider = storage.provider();
        provider.createFolder(storage.at("a"));
        provider.createFile(storage.at("a", "file"));
        Files.setLastModifiedTime(storage.path("a", "file"), TIME);
        provider.moveFile(storage.at("a", "file"), storage.at("a", "moved"), /* replace= */ false);
        assertTime(storage.path("a", "moved"));
        provider.createFile(storage.at("a", "file"));
        provider.moveFile(storage.at("a", "moved"), storage.at("a", "file"), /* replace= */ true);
        assertTime(storage.path("a", "file"));
        Files.setLastModifiedTime(storage.path("a"), TIME);
        provider.moveFolder(storage.at("a"), storage.at("b"), /* replace= */ false);
        assertTime(storage.path("b"));
        assertTime(storage.path("b", "file"));
        storage.tearDown();
    }
}
