package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.RecordingPublisher;
import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.util.TreeMap;
import java.util.stream.Stream;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/**
 * Nothing leads out of a mount. Beside the mount's root is a folder "outside" that holds a file and a folder; it must
 * hold the same after every attempt.
 */
abstract class JailContract extends NioTestCase {
    private Path outside;
    private TreeMap<String, String> before;

    JailContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @BeforeEach
    final void buildOutside() throws Exception {
        outside = Files.createDirectory(path().resolveSibling("outside-" + path().getFileName()));
        write(outside.resolve("file"), "secret");
        Files.createDirectory(outside.resolve("folder"));
        write(outside.resolve("folder").resolve("child"), "secret child");
        before = contentOf(outside);
    }

    @AfterEach
    final void assertOutsideIsAsBefore() throws Exception {
        assertEquals(before, contentOf(outside));
        Removal.removeTree(outside);
    }

    private static TreeMap<String, String> contentOf(Path folder) throws Exception {
        TreeMap<String, String> content = new TreeMap<>();
        try (Stream<Path> all = Files.walk(folder)) {
            for (Path path : (Iterable<Path>) all::iterator) {
                boolean isFile = Files.isRegularFile(path, LinkOption.NOFOLLOW_LINKS);
                content.put(path.toString(), isFile ? read(path) : "");
            }
        }
        return content;
    }

    private String relative(String... names) {
        String path = "../" + outside.getFileName();
        return names.length == 0 ? path : path + "/" + String.join("/", names);
    }

    private static void assertDenied(Executable operation) {
        ProviderException failure = assertThrows(ProviderException.class, operation);
        assertEquals(ErrorCode.ACCESS_DENIED, failure.getErrorCode(), failure.getMessage());
    }

    /** Tries every operation at a location whose path leads out before its last name. */
    private void assertNothingGetsThrough(StorageURI location) throws Exception {
        StorageURI file = file("mine", "mine");
        StorageURI folder = folder("myFolder");
        assertDenied(() -> provider.fileExists(location));
        assertDenied(() -> provider.folderExists(location));
        assertDenied(() -> provider.createFile(location));
        assertDenied(() -> provider.createFolder(location));
        assertDenied(() -> provider.removeFile(location));
        assertDenied(() -> provider.removeFolder(location));
        assertDenied(() -> provider.removeFolderRecursively(location));
        assertDenied(() -> provider.moveFile(location, at("stolen"), true));
        assertDenied(() -> provider.moveFolder(location, at("stolen"), true));
        assertDenied(() -> provider.moveFile(file, location, true));
        assertDenied(() -> provider.moveFile(file, location, false));
        assertDenied(() -> provider.moveFolder(folder, location, true));
        assertNothingIsRead(location);
        assertFile("mine", file);
        assertFolder(folder);
        assertMissing(at("stolen"));
    }

    private void assertNothingIsRead(StorageURI location) {
        assertDenied(() -> provider.getFileAttributes(location));
        assertDenied(() -> provider.getFolderAttributes(location));
        assertDenied(() -> provider.setLastModified(location, 0));
        assertDenied(() -> provider.listFolder(location));
        assertDenied(() -> provider.getReadOnlyChannel(location));
        assertDenied(() -> provider.getChannel(location, /* create= */ true, /* truncate= */ true, false));
        assertDenied(() -> provider.getExtendedAttributes(location));
        assertDenied(() -> provider.getProviderStorageInfo(location));
        assertDenied(() -> provider.publishEventsFor(location, new RecordingPublisher()));
    }

    @ParameterizedTest
    @ValueSource(strings = {"file", "folder", "missing"})
    void nothingIsReadOrWrittenThroughALinkThatLeadsOut(String name) throws Exception {
        assertNothingIsRead(link(relative(name), "relative"));
        assertNothingIsRead(link(outside.resolve(name).toString(), "absolute"));
    }

    @ParameterizedTest
    @ValueSource(strings = {"file", "folder", "missing"})
    void linkThatLeadsOutIsListedAsAFile(String name) throws Exception {
        link(relative(name), "link");
        FolderListEntry[] listed = provider.listFolder(at());
        assertArrayEquals(new FolderListEntry[] {new FolderListEntry("link", /* folder= */ false)}, listed);
    }

    @ParameterizedTest
    @ValueSource(strings = {"file", "folder", "missing"})
    void relativeLinkOnTheWayLeadsNowhere(String name) throws Exception {
        link(relative(), "link");
        assertNothingGetsThrough(at("link", name));
    }

    @ParameterizedTest
    @ValueSource(strings = {"file", "folder", "missing"})
    void absoluteLinkOnTheWayLeadsNowhere(String name) throws Exception {
        link(outside.toString(), "link");
        assertNothingGetsThrough(at("link", name));
    }

    @Test
    void linkToTheFolderAboveLeadsNowhere() throws Exception {
        link("..", "up");
        assertNothingGetsThrough(at("up", outside.getFileName().toString(), "file"));
    }

    @Test
    void linkToTheSystemsRootLeadsNowhere() throws Exception {
        link("/", "slash");
        assertNothingGetsThrough(at("slash", "etc"));
    }

    @Test
    void linkThatGoesOutDeepDownLeadsNowhere() throws Exception {
        folder("a");
        folder("a", "b");
        link("../../" + relative(), "a", "b", "link");
        assertNothingGetsThrough(at("a", "b", "link", "file"));
    }

    @Test
    void chainOfLinksLeadsNowhere() throws Exception {
        folder("a");
        link("../second", "a", "first");
        link("third", "second");
        link(outside.toString(), "third");
        assertNothingGetsThrough(at("a", "first", "file"));
    }

    @Test
    void absoluteLinkThatGoesOutWithDotsLeadsNowhere() throws Exception {
        link(path() + "/" + relative(), "link");
        assertNothingGetsThrough(at("link", "file"));
    }

    @Test
    void linkThatLeavesAndComesBackLeadsNowhere() throws Exception {
        link("../" + path().getFileName(), "link");
        file("x", "file");
        assertNothingGetsThrough(at("link", "file"));
    }

    @Test
    void linkBesideARootOfWhichTheNameBeginsTheSameLeadsNowhere() throws Exception {
        Path twin = Files.createDirectory(path().resolveSibling(path().getFileName() + "-twin"));
        link(twin.toString(), "link");
        assertNothingGetsThrough(at("link", "file"));
        Files.delete(twin);
    }

    @ParameterizedTest
    @ValueSource(strings = {"file", "folder", "missing"})
    void existenceOutsideIsNotShown(String name) throws Exception {
        StorageURI link = link(relative(name), "link");
        assertDenied(() -> provider.fileExists(link));
        assertDenied(() -> provider.folderExists(link));
    }

    @ParameterizedTest
    @ValueSource(strings = {"file", "folder", "missing"})
    void nothingIsCreatedThroughALinkThatLeadsOut(String name) throws Exception {
        StorageURI link = link(outside.resolve(name).toString(), "link");
        assertFails(ErrorCode.ALREADY_EXISTS, link, () -> provider.createFile(link));
        assertFails(ErrorCode.ALREADY_EXISTS, link, () -> provider.createFolder(link));
    }

    @ParameterizedTest
    @ValueSource(strings = {"file", "folder", "missing"})
    void linkThatLeadsOutIsAFileToRemove(String name) throws Exception {
        StorageURI link = link(relative(name), "link");
        assertFails(ErrorCode.NOT_A_FOLDER, link, () -> provider.removeFolder(link));
        assertFails(ErrorCode.NOT_A_FOLDER, link, () -> provider.removeFolderRecursively(link));
        provider.removeFile(link);
        assertMissing(link);
    }

    @ParameterizedTest
    @ValueSource(strings = {"file", "folder", "missing"})
    void linkThatLeadsOutMovesItselfAndNothingIsReplacedThroughIt(String name) throws Exception {
        StorageURI link = link(relative(name), "link");
        StorageURI moved = at("moved");
        provider.moveFile(link, moved, /* replace= */ false);
        assertTrue(Files.isSymbolicLink(path("moved")));
        StorageURI mine = file("mine", "mine");
        assertFails(ErrorCode.ACCESS_DENIED, moved, () -> provider.moveFile(mine, moved, /* replace= */ true));
        assertTrue(Files.isSymbolicLink(path("moved")));
        assertFile("mine", mine);
    }

    @Test
    void recursiveRemovalDoesNotReachOut() throws Exception {
        StorageURI doomed = folder("doomed");
        link("../" + relative(), "doomed", "relative");
        link(outside.toString(), "doomed", "absolute");
        link("../" + relative("file"), "doomed", "file");
        provider.removeFolderRecursively(doomed);
        assertMissing(doomed);
    }

    @Test
    void replacedFolderWithLinksDoesNotReachOut() throws Exception {
        StorageURI old = folder("old");
        link(outside.toString(), "old", "link");
        provider.moveFolder(folder("new"), old, /* replace= */ true);
        assertEquals(0, storage.countEntries(old));
    }

    @Test
    void movedLinkThatLeadsOutFromItsNewPlaceLeadsNowhere() throws Exception {
        folder("a");
        folder("a", "b");
        folder(outside.getFileName().toString());
        // In its place the link leads to the inner folder of that name; two levels up it would lead out.
        link("../../" + outside.getFileName(), "a", "b", "link");
        assertFolder(at("a", "b", "link"));
        provider.moveFolder(at("a", "b", "link"), at("a", "link"), /* replace= */ false);
        assertDenied(() -> provider.removeFile(at("a", "link", "file")));
    }

    @ParameterizedTest
    @ValueSource(
            strings = {
                "..", "%2e%2e", "%2E%2e", ".%2e", "%2E.", "a/..", "a/../..", "%2e%2e%2foutside", "..%2Foutside",
                "%2Fetc%2Fpasswd", "a%2F..%2F..", "%00", "a%00/..", "link/../..", "."
            })
    void dotsAndSlashesAreNoLocation(String path) throws Exception {
        StorageURI location = new StorageURI(storage.root() + "/" + path);
        folder("a");
        for (Executable operation : new Executable[] {
            () -> provider.fileExists(location),
            () -> provider.createFile(location),
            () -> provider.createFolder(location),
            () -> provider.removeFile(location),
            () -> provider.removeFolderRecursively(location),
            () -> provider.moveFile(location, at("b"), true),
            () -> provider.moveFolder(at("a"), location, true)
        }) {
            assertFails(ErrorCode.INVALID_LOCATION, location, operation);
        }
    }
}
