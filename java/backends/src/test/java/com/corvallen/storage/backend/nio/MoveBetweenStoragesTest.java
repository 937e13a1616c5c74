package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;
import static org.junit.jupiter.params.provider.Arguments.arguments;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import com.google.common.jimfs.Configuration;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.FileTime;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.stream.Stream;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.Timeout;
import org.junit.jupiter.api.function.Executable;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.Arguments;
import org.junit.jupiter.params.provider.MethodSource;

/** Moves where a rename is not enough: content is copied, arrives complete, and the source is removed last. */
@Timeout(60)
class MoveBetweenStoragesTest {
    private static final int MEGABYTE = 1 << 20;

    private final NioProvider provider = new NioProvider();
    private final List<NioStorage> storages = new ArrayList<>();

    /** Opens one storage. */
    private interface Opener {
        NioStorage open() throws IOException;
    }

    static Stream<Arguments> pairs() {
        Opener folder = NioStorage::ofFolder;
        Opener archive = NioStorage::ofArchive;
        Opener memory = NioStorage::ofMemory;
        Opener disk = OtherDisk::open;
        return Stream.of(
                arguments("folder to archive", folder, archive),
                arguments("archive to folder", archive, folder),
                arguments("archive to archive", archive, archive),
                arguments("folder to memory", folder, memory),
                arguments("memory to archive", memory, archive),
                arguments("memory to memory", memory, memory),
                arguments("folder to folder", folder, folder),
                arguments("folder to another disk", folder, disk),
                arguments("another disk to archive", disk, archive));
    }

    private NioStorage open(Opener opener) throws IOException {
        NioStorage storage = opener.open();
        storages.add(storage);
        return storage;
    }

    @AfterEach
    void close() throws Exception {
        provider.dispose();
        for (NioStorage storage : storages) {
            storage.tearDown();
        }
    }

    private static StorageURI file(NioStorage storage, String content, String... names) throws Exception {
        StorageURI location = storage.at(names);
        storage.write(location, content);
        return location;
    }

    private static void tree(NioStorage storage, String content, String name) throws Exception {
        Files.createDirectories(storage.path(name, "sub"));
        Files.createDirectory(storage.path(name, "empty"));
        file(storage, content + " 1", name, "file");
        file(storage, content + " 2", name, "sub", "file");
    }

    private static void assertTree(String content, NioStorage storage, String name) throws Exception {
        assertEquals(3, storage.countEntries(storage.at(name)));
        assertEquals(content + " 1", storage.read(storage.at(name, "file")));
        assertEquals(content + " 2", storage.read(storage.at(name, "sub", "file")));
        assertTrue(Files.isDirectory(storage.path(name, "empty")));
    }

    private static void assertEntries(int count, NioStorage storage) throws Exception {
        assertEquals(count, storage.countEntries(storage.root()));
    }

    private static ProviderException assertFails(ErrorCode code, StorageURI location, Executable operation) {
        ProviderException failure = assertThrows(ProviderException.class, operation);
        assertEquals(code, failure.getErrorCode(), failure.getMessage());
        assertEquals(location.getText(), failure.getLocationString());
        return failure;
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("pairs")
    void fileArrivesWithItsTimeAndLeaves(String pair, Opener source, Opener target) throws Exception {
        NioStorage from = open(source);
        NioStorage to = open(target);
        StorageURI a = file(from, "x", "a");
        Files.setLastModifiedTime(from.path("a"), FileTime.fromMillis(1_000_000_000_000L));
        provider.moveFile(a, to.at("b"), /* replace= */ false);
        assertEquals("x", to.read(to.at("b")));
        assertEquals(1_000_000_000_000L, Files.getLastModifiedTime(to.path("b")).toMillis());
        assertEntries(0, from);
        assertEntries(1, to);
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("pairs")
    void fileIsReplacedOnlyIfAsked(String pair, Opener source, Opener target) throws Exception {
        NioStorage from = open(source);
        NioStorage to = open(target);
        StorageURI a = file(from, "new", "a");
        StorageURI b = file(to, "old", "b");
        assertFails(ErrorCode.ALREADY_EXISTS, b, () -> provider.moveFile(a, b, /* replace= */ false));
        assertEquals("old", to.read(b));
        provider.moveFile(a, b, /* replace= */ true);
        assertEquals("new", to.read(b));
        assertEntries(0, from);
        assertEntries(1, to);
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("pairs")
    void folderArrivesWithEverythingInIt(String pair, Opener source, Opener target) throws Exception {
        NioStorage from = open(source);
        NioStorage to = open(target);
        tree(from, "x", "a");
        provider.moveFolder(from.at("a"), to.at("b"), /* replace= */ false);
        assertTree("x", to, "b");
        assertEntries(0, from);
        assertEntries(1, to);
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("pairs")
    void folderIsReplacedOnlyIfAsked(String pair, Opener source, Opener target) throws Exception {
        NioStorage from = open(source);
        NioStorage to = open(target);
        tree(from, "new", "a");
        tree(to, "old", "b");
        StorageURI b = to.at("b");
        assertFails(ErrorCode.ALREADY_EXISTS, b, () -> provider.moveFolder(from.at("a"), b, /* replace= */ false));
        assertTree("old", to, "b");
        provider.moveFolder(from.at("a"), b, /* replace= */ true);
        assertTree("new", to, "b");
        assertEntries(0, from);
        assertEntries(1, to);
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("pairs")
    void sameNamesInDifferentStoragesAreApart(String pair, Opener source, Opener target) throws Exception {
        NioStorage from = open(source);
        NioStorage to = open(target);
        tree(from, "x", "a");
        Files.createDirectory(to.path("a"));
        provider.moveFolder(from.at("a"), to.at("a", "b"), /* replace= */ false);
        provider.moveFolder(to.at("a", "b"), from.at("a"), /* replace= */ false);
        assertTree("x", from, "a");
        provider.moveFolder(from.at("a"), to.at("a"), /* replace= */ true);
        assertTree("x", to, "a");
        assertEntries(0, from);
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("pairs")
    void rootIsNeitherMovedNorReplaced(String pair, Opener source, Opener target) throws Exception {
        NioStorage from = open(source);
        NioStorage to = open(target);
        tree(from, "x", "a");
        StorageURI a = from.at("a");
        assertFails(
                ErrorCode.ACCESS_DENIED, from.root(), () -> provider.moveFolder(from.root(), to.at("b"), true));
        assertFails(ErrorCode.ACCESS_DENIED, to.root(), () -> provider.moveFolder(a, to.root(), true));
        assertFails(ErrorCode.ALREADY_EXISTS, to.root(), () -> provider.moveFolder(a, to.root(), false));
        assertTree("x", from, "a");
    }

    private static NioStorage small() throws IOException {
        return NioStorage.ofMemory(Configuration.unix().toBuilder().setMaxSize(2L * MEGABYTE).build());
    }

    private static String big(char c) {
        char[] text = new char[MEGABYTE + MEGABYTE / 2];
        Arrays.fill(text, c);
        return new String(text);
    }

    @Test
    void fileThatDoesNotFitStaysAndReplacesNothing() throws Exception {
        NioStorage from = open(NioStorage::ofFolder);
        NioStorage to = open(MoveBetweenStoragesTest::small);
        StorageURI a = file(from, big('a'), "a");
        StorageURI b = file(to, big('b'), "b");
        assertFails(ErrorCode.STORAGE_FULL, b, () -> provider.moveFile(a, b, /* replace= */ true));
        assertEquals(big('a'), from.read(a));
        assertEquals(big('b'), to.read(b));
        assertEntries(1, to);
    }

    @Test
    void folderThatDoesNotFitStaysAndReplacesNothing() throws Exception {
        NioStorage from = open(NioStorage::ofFolder);
        NioStorage to = open(MoveBetweenStoragesTest::small);
        tree(from, big('a'), "a");
        tree(to, "old", "b");
        StorageURI b = to.at("b");
        assertFails(ErrorCode.STORAGE_FULL, b, () -> provider.moveFolder(from.at("a"), b, /* replace= */ true));
        assertTree(big('a'), from, "a");
        assertTree("old", to, "b");
        assertEntries(1, to);
    }

    @Test
    void folderWithANameThatAnArchiveCannotTakeStaysAndReplacesNothing() throws Exception {
        NioStorage from = open(NioStorage::ofFolder);
        NioStorage to = open(NioStorage::ofArchive);
        tree(from, "new", "a");
        file(from, "odd", "a", "sub", "back\\slash");
        tree(to, "old", "b");
        ProviderException failure = assertThrows(
                ProviderException.class, () -> provider.moveFolder(from.at("a"), to.at("b"), /* replace= */ true));
        assertEquals(ErrorCode.INVALID_LOCATION, failure.getErrorCode());
        assertEquals("odd", from.read(from.at("a", "sub", "back\\slash")));
        assertTree("old", to, "b");
        assertEntries(1, to);
    }

    @Test
    void linkDoesNotMoveToAnotherKindOfFileSystem() throws Exception {
        NioStorage from = open(NioStorage::ofFolder);
        NioStorage to = open(NioStorage::ofArchive);
        tree(from, "x", "a");
        Files.createSymbolicLink(from.path("link"), Path.of("a", "file"));
        Files.createSymbolicLink(from.path("a", "link"), Path.of("file"));
        StorageURI link = from.at("link");
        assertFails(ErrorCode.NOT_SUPPORTED, link, () -> provider.moveFile(link, to.at("b"), true));
        assertFails(ErrorCode.NOT_SUPPORTED, from.at("a"), () -> provider.moveFolder(from.at("a"), to.at("b"), true));
        assertEquals("x 1", from.read(link));
        assertTrue(Files.isSymbolicLink(from.path("a", "link")));
        assertEntries(0, to);
    }

    @Test
    void pipeDoesNotMoveToAnotherKindOfFileSystem() throws Exception {
        NioStorage from = open(NioStorage::ofFolder);
        NioStorage to = open(NioStorage::ofArchive);
        StorageURI pipe = from.pipe("pipe");
        assertFails(ErrorCode.NOT_SUPPORTED, pipe, () -> provider.moveFile(pipe, to.at("b"), true));
        assertTrue(provider.fileExists(pipe));
        assertEntries(0, to);
    }

    @Test
    void linkMovesToAnotherDiskAsALink() throws Exception {
        NioStorage from = open(NioStorage::ofFolder);
        NioStorage to = open(OtherDisk::open);
        Files.createSymbolicLink(from.path("link"), Path.of("nowhere"));
        provider.moveFile(from.at("link"), to.at("link"), /* replace= */ false);
        assertTrue(Files.isSymbolicLink(to.path("link")));
        assertFalse(Files.isSymbolicLink(from.path("link")));
    }
}
