package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;
import static org.junit.jupiter.params.provider.Arguments.arguments;

import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import com.google.common.jimfs.Configuration;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.PosixFilePermissions;
import java.nio.file.attribute.UserDefinedFileAttributeView;
import java.util.Map;
import java.util.TreeMap;
import java.util.stream.Stream;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Assumptions;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.Timeout;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.Arguments;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.MethodSource;

/** A file that replaces another takes over its permissions, owner and user attributes. */
@Timeout(60)
class ReplacementTest {
    private NioStorage storage;

    static Stream<Arguments> storages() {
        return Stream.of(
                arguments("default file system", (StorageUnderTest.Opener) NioStorage::ofDefaultFileSystem),
                arguments("folder", (StorageUnderTest.Opener) NioStorage::ofFolder),
                arguments("memory", (StorageUnderTest.Opener) ReplacementTest::memory));
    }

    private static NioStorage memory() throws Exception {
        return NioStorage.ofMemory(Configuration.unix().toBuilder()
                .setAttributeViews("basic", "owner", "posix", "unix", "user")
                .build());
    }

    private void open(StorageUnderTest.Opener opener) throws Exception {
        storage = (NioStorage) opener.open();
    }

    @AfterEach
    void close() throws Exception {
        if (storage != null) {
            storage.tearDown();
        }
    }

    private StorageURI file(NioStorage in, String content, String permissions, String... names) throws Exception {
        StorageURI location = in.at(names);
        in.write(location, content);
        Files.setPosixFilePermissions(in.path(names), PosixFilePermissions.fromString(permissions));
        return location;
    }

    private StorageURI file(String content, String permissions, String... names) throws Exception {
        return file(storage, content, permissions, names);
    }

    private void move(StorageURI from, StorageURI to, boolean replace) throws ProviderException {
        storage.provider().moveFile(from, to, replace);
    }

    private static void assertPermissions(String expected, Path path) throws Exception {
        assertEquals(expected, PosixFilePermissions.toString(Files.getPosixFilePermissions(path)));
    }

    private static UserDefinedFileAttributeView attached(Path path) {
        return Files.getFileAttributeView(path, UserDefinedFileAttributeView.class);
    }

    private static void attach(Path path, String name, String value) throws Exception {
        attached(path).write(name, ByteBuffer.wrap(value.getBytes(StandardCharsets.UTF_8)));
    }

    private static Map<String, String> attachedTo(Path path) throws Exception {
        Map<String, String> values = new TreeMap<>();
        for (String name : attached(path).list()) {
            ByteBuffer value = ByteBuffer.allocate(attached(path).size(name));
            attached(path).read(name, value);
            values.put(name, new String(value.array(), StandardCharsets.UTF_8));
        }
        return values;
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("storages")
    void permissionsAreThoseOfTheReplacedFile(String kind, StorageUnderTest.Opener opener) throws Exception {
        open(opener);
        StorageURI b = file("old", "rwxr-x---", "b");
        move(file("new", "rw-rw-rw-", "a"), b, /* replace= */ true);
        assertEquals("new", storage.read(b));
        assertPermissions("rwxr-x---", storage.path("b"));
        move(file("newer", "rwx------", "a"), b, /* replace= */ true);
        assertPermissions("rwxr-x---", storage.path("b"));
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("storages")
    void fileThatReplacesNothingKeepsItsOwn(String kind, StorageUnderTest.Opener opener) throws Exception {
        open(opener);
        move(file("x", "rw-rw----", "a"), storage.at("b"), /* replace= */ true);
        assertPermissions("rw-rw----", storage.path("b"));
        move(storage.at("b"), storage.at("c"), /* replace= */ false);
        assertPermissions("rw-rw----", storage.path("c"));
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("storages")
    void attachedValuesOfBothStayAndTheReplacedFilesWin(String kind, StorageUnderTest.Opener opener)
            throws Exception {
        open(opener);
        StorageURI a = file("new", "rw-------", "a");
        StorageURI b = file("old", "rw-------", "b");
        Assumptions.assumeTrue(
                Files.getFileStore(storage.path("b")).supportsFileAttributeView(UserDefinedFileAttributeView.class));
        attach(storage.path("a"), "both", "of the new");
        attach(storage.path("a"), "new", "1");
        attach(storage.path("b"), "both", "of the old");
        attach(storage.path("b"), "old", "2");
        Files.setPosixFilePermissions(storage.path("a"), PosixFilePermissions.fromString("r--------"));
        move(a, b, /* replace= */ true);
        assertEquals(Map.of("both", "of the old", "new", "1", "old", "2"), attachedTo(storage.path("b")));
        assertPermissions("rw-------", storage.path("b"));
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("storages")
    void permissionsAreThoseOfWhatALinkLeadsTo(String kind, StorageUnderTest.Opener opener) throws Exception {
        open(opener);
        Files.createDirectory(storage.path("folder"));
        StorageURI b = file("old", "rw-r-----", "folder", "b");
        Path link = storage.path("link");
        Files.createSymbolicLink(link, link.getFileSystem().getPath("folder", "b"));
        move(file("new", "rw-rw-rw-", "a"), storage.at("link"), /* replace= */ true);
        assertTrue(Files.isSymbolicLink(link));
        assertEquals("new", storage.read(b));
        assertPermissions("rw-r-----", storage.path("folder", "b"));
    }

    @ParameterizedTest(name = "{0}")
    @MethodSource("storages")
    void hardLinksPart(String kind, StorageUnderTest.Opener opener) throws Exception {
        open(opener);
        StorageURI b = file("old", "rw-------", "b");
        Files.createLink(storage.path("second"), storage.path("b"));
        move(file("new", "rw-r--r--", "a"), b, /* replace= */ true);
        assertEquals("new", storage.read(b));
        assertEquals("old", storage.read(storage.at("second")));
    }

    @Test
    void fileFromAnotherDiskTakesOverTheSame() throws Exception {
        open(NioStorage::ofFolder);
        NioStorage disk = OtherDisk.open();
        StorageURI a = file(disk, "new", "rw-rw-rw-", "a");
        StorageURI b = file("old", "rw-------", "b");
        attach(storage.path("b"), "old", "2");
        Files.setPosixFilePermissions(storage.path("b"), PosixFilePermissions.fromString("r--------"));
        move(a, b, /* replace= */ true);
        assertEquals("new", storage.read(b));
        assertPermissions("r--------", storage.path("b"));
        assertEquals(Map.of("old", "2"), attachedTo(storage.path("b")));
        disk.tearDown();
    }

    @Test
    void whatHadNoPermissionsGetsThoseOfANewFile() throws Exception {
        open(NioStorage::ofFolder);
        NioStorage other = NioStorage.ofMemory();
        other.provider().createFolder(other.at("folder"));
        other.write(other.at("folder", "file"), "x");
        Path file = Files.createFile(storage.path("new file"));
        Path folder = Files.createDirectory(storage.path("new folder"));
        move(other.at("folder", "file"), storage.at("file"), /* replace= */ false);
        storage.provider().moveFolder(other.at("folder"), storage.at("folder"), /* replace= */ false);
        assertEquals(Files.getPosixFilePermissions(file), Files.getPosixFilePermissions(storage.path("file")));
        assertEquals(Files.getPosixFilePermissions(folder), Files.getPosixFilePermissions(storage.path("folder")));
        assertEquals(4, storage.countEntries(storage.at()));
        other.tearDown();
    }

    @Test
    void fileFromAnotherDiskThatReplacesNothingKeepsItsOwn() throws Exception {
        open(NioStorage::ofFolder);
        NioStorage disk = OtherDisk.open();
        StorageURI a = file("x", "rwxr-x--x", "a");
        attach(storage.path("a"), "mark", "1");
        storage.provider().moveFile(a, disk.at("b"), /* replace= */ true);
        assertPermissions("rwxr-x--x", disk.path("b"));
        Assumptions.assumeTrue(
                Files.getFileStore(disk.path("b")).supportsFileAttributeView(UserDefinedFileAttributeView.class));
        assertEquals(Map.of("mark", "1"), attachedTo(disk.path("b")));
        disk.tearDown();
    }

    @Test
    void ownerAndGroupAreTakenOverWhereTheProcessMay() throws Exception {
        open(NioStorage::ofFolder);
        StorageURI b = file("old", "rw-r-----", "b");
        Assumptions.assumeTrue(isGivenAway(storage.path("b")), "only root may give files away");
        Files.setAttribute(storage.path("b"), "unix:mode", 06755);
        move(file("new", "rw-rw-rw-", "a"), b, /* replace= */ true);
        Map<String, Object> found = Files.readAttributes(storage.path("b"), "unix:mode,uid,gid");
        assertEquals(1234, found.get("uid"));
        assertEquals(5678, found.get("gid"));
        assertEquals(0755, (int) found.get("mode") & 07777, "a new program does not run as the owner of the old one");
    }

    private static boolean isGivenAway(Path path) {
        try {
            Files.setAttribute(path, "unix:uid", 1234);
            Files.setAttribute(path, "unix:gid", 5678);
            return true;
        } catch (IOException e) {
            return false;
        }
    }

    /** Takes modes in octal. */
    @ParameterizedTest
    @CsvSource({
        "0640,true,true,0640", "0640,true,false,0600", "0664,true,false,0644", "06755,false,true,0755",
        "06755,true,true,06755", "0677,true,false,0677", "0070,false,false,0000"
    })
    void groupThatCannotBeGivenMayDoNoMoreThanEveryone(String mode, boolean owner, boolean group, String expected) {
        assertEquals(
                Integer.parseInt(expected, 8), KeptAttributes.narrowed(Integer.parseInt(mode, 8), owner, group));
    }

    @Test
    void failureGivesTheSourceBackWhatItHad() throws Exception {
        open(NioStorage::ofFolder);
        file("new", "r--r-----", "a");
        file("old", "rwx------", "b");
        attach(storage.path("b"), "old", "2");
        KeptAttributes own = KeptAttributes.of(storage.path("a"));
        KeptAttributes replaced = KeptAttributes.of(storage.path("b"));
        replaced.giveUserAttributes(storage.path("a"));
        replaced.giveAccessAnew(storage.path("a"));
        assertPermissions("rwx------", storage.path("a"));
        Exception reported = new Exception();
        own.restore(storage.path("a"), reported);
        assertEquals(0, reported.getSuppressed().length);
        assertPermissions("r--r-----", storage.path("a"));
        assertEquals(Map.of(), attachedTo(storage.path("a")));
    }

    @Test
    void pipeIsNotReplaced() throws Exception {
        open(NioStorage::ofFolder);
        storage.pipe("pipe");
        Files.createSymbolicLink(storage.path("link"), Path.of("pipe"));
        StorageURI a = file("x", "rw-------", "a");
        for (String name : new String[] {"pipe", "link"}) {
            ProviderException failure =
                    assertThrows(ProviderException.class, () -> move(a, storage.at(name), /* replace= */ true));
            assertEquals(ErrorCode.NOT_SUPPORTED, failure.getErrorCode());
        }
        assertTrue(Files.readAttributes(
                        storage.path("pipe"),
                        BasicFileAttributes.class,
                        LinkOption.NOFOLLOW_LINKS)
                .isOther());
        assertEquals("x", storage.read(a));
    }
}
