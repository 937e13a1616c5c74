package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import com.google.common.jimfs.Configuration;
import com.google.common.jimfs.Jimfs;
import java.net.URI;
import java.nio.file.FileSystem;
import java.nio.file.FileSystemNotFoundException;
import java.nio.file.FileSystems;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

/** How mounts are found, opened and closed. */
class MountsTest extends MountCase {
    private static final String PROPERTY = "storage.mount.mounts-test";
    private static final StorageURI ROOT = new StorageURI("java://mounts-test/");
    private static final StorageURI A = new StorageURI("java://mounts-test/a");

    MountsTest() {
        super(PROPERTY);
    }

    private String archiveUri() throws Exception {
        return "jar:" + NioStorage.newArchive(folder.resolve("a.zip")).toUri();
    }

    private ProviderException assertUnavailable(StorageURI location) {
        ProviderException failure = assertThrows(ProviderException.class, () -> provider.folderExists(location));
        assertEquals(ErrorCode.UNAVAILABLE, failure.getErrorCode(), failure.getMessage());
        assertEquals(location.getText(), failure.getLocationString());
        return failure;
    }

    private static void assertClosed(String uri) {
        assertThrows(FileSystemNotFoundException.class, () -> FileSystems.getFileSystem(URI.create(uri)));
    }

    /** Returns what other programs find in the archive now. */
    private static boolean holdsA(String uri) throws Exception {
        try (FileSystem archive = FileSystems.newFileSystem(URI.create(uri), Map.of())) {
            return Files.isRegularFile(archive.getPath("/a"));
        }
    }

    @Test
    void folderIsMounted() throws Exception {
        mount(folder.toUri());
        provider.createFile(A);
        assertTrue(Files.isRegularFile(folder.resolve("a")));
    }

    @Test
    void mountNameIsDecoded() throws Exception {
        System.setProperty("storage.mount.my mount", folder.toUri().toString());
        try {
            provider.createFolder(new StorageURI("java://my%20mount/a"));
            assertTrue(Files.isDirectory(folder.resolve("a")));
        } finally {
            System.clearProperty("storage.mount.my mount");
        }
    }

    @Test
    void mountThatIsNotSetIsNamed() {
        ProviderException failure = assertUnavailable(A);
        assertTrue(failure.getMessage().contains(PROPERTY), failure.getMessage());
    }

    @ParameterizedTest
    @CsvSource({
        "'', is not a URI",
        "/srv/data, is not a URI",
        "not a uri, is not a URI",
        "file:relative, cannot be opened",
        "file:///does/not/exist, is not a folder",
        "file://host/a, cannot be opened",
        "nosuchscheme:///a, needs a file-system provider",
        "jar:file:///does/not/exist.zip, cannot be opened",
        "jimfs://nobody-has-made-it/folder, cannot be opened"
    })
    void badValueIsNamedWithItsProperty(String value, String why) {
        mount(value);
        String message = assertUnavailable(A).getMessage();
        assertTrue(message.contains(PROPERTY + "=" + value), message);
        assertTrue(message.contains(why), message);
    }

    @Test
    void fileIsNoMount() throws Exception {
        mount(Files.createFile(folder.resolve("file")).toUri());
        assertTrue(assertUnavailable(A).getMessage().contains("is not a folder"));
    }

    @Test
    void damagedArchiveIsNoMount() throws Exception {
        for (String name : new String[] {"a.zip", "a.data"}) {
            mount("jar:" + Files.write(folder.resolve(name), new byte[100]).toUri());
            String message = assertUnavailable(A).getMessage();
            assertTrue(message.endsWith(" cannot be opened: zip END header not found"), message);
        }
    }

    @Test
    void mountIsTriedAgainAfterAFailure() throws Exception {
        Path later = folder.resolve("later");
        mount("file://" + later);
        assertUnavailable(A);
        Files.createDirectory(later);
        assertTrue(provider.folderExists(ROOT));
    }

    @Test
    void archiveIsWrittenAndClosedByDisposal() throws Exception {
        String uri = archiveUri();
        mount(uri);
        provider.createFile(A);
        assertFalse(holdsA(uri));
        provider.dispose();
        assertClosed(uri);
        assertTrue(holdsA(uri));
    }

    @Test
    void closingWritesTheArchiveSilently() throws Exception {
        String uri = archiveUri();
        mount(uri);
        provider.createFile(A);
        provider.close();
        provider.close();
        assertClosed(uri);
        assertTrue(holdsA(uri));
        assertUnavailable(A);
    }

    @Test
    void closingReportsThatAnArchiveCannotBeWritten() throws Exception {
        mount(archiveUri());
        provider.createFile(A);
        Removal.removeTree(folder);
        ProviderException failure = assertThrows(ProviderException.class, provider::close);
        assertEquals(ErrorCode.IN_USE, failure.getErrorCode(), failure.getMessage());
        assertEquals(ROOT.getText(), failure.getLocationString());
        Files.createDirectory(folder);
    }

    @Test
    void archiveIsSharedAndClosedByTheLastProvider() throws Exception {
        String uri = archiveUri();
        mount(uri);
        NioProvider other = new NioProvider();
        provider.createFile(A);
        assertTrue(other.fileExists(A));
        provider.dispose();
        assertTrue(other.fileExists(A));
        assertFalse(holdsA(uri));
        other.dispose();
        assertClosed(uri);
        assertTrue(holdsA(uri));
    }

    @Test
    void archiveUnderTwoNamesIsClosedOnce() throws Exception {
        String uri = archiveUri();
        mount(uri);
        System.setProperty(PROPERTY + "2", uri + "!/sub");
        try {
            provider.createFolder(new StorageURI("java://mounts-test/sub"));
            provider.createFile(new StorageURI("java://mounts-test2/a"));
            assertTrue(provider.fileExists(new StorageURI("java://mounts-test/sub/a")));
            provider.dispose();
            assertClosed(uri);
        } finally {
            System.clearProperty(PROPERTY + "2");
        }
    }

    @Test
    void folderInAnArchiveIsAJailToo() throws Exception {
        String uri = archiveUri();
        try (FileSystem archive = FileSystems.newFileSystem(URI.create(uri), Map.of())) {
            Files.createDirectory(archive.getPath("/sub"));
            Files.createFile(archive.getPath("/outside"));
        }
        mount(uri + "!/sub");
        provider.createFile(A);
        assertFalse(provider.fileExists(new StorageURI("java://mounts-test/outside")));
        for (String name : new String[] {"..%5Coutside", "%5C..%5Coutside", "%5Coutside"}) {
            StorageURI location = new StorageURI("java://mounts-test/" + name);
            ProviderException failure =
                    assertThrows(ProviderException.class, () -> provider.removeFile(location));
            assertEquals(ErrorCode.INVALID_LOCATION, failure.getErrorCode());
        }
        provider.dispose();
        try (FileSystem archive = FileSystems.newFileSystem(URI.create(uri), Map.of())) {
            assertTrue(Files.exists(archive.getPath("/outside")));
            assertTrue(Files.exists(archive.getPath("/sub/a")));
        }
    }

    @Test
    void failedMountLeavesNothingOpen() throws Exception {
        String uri = archiveUri();
        mount(uri + "!/missing");
        assertUnavailable(A);
        assertClosed(uri);
    }

    @Test
    void openArchiveIsUsedAndLeftOpen() throws Exception {
        String uri = archiveUri();
        mount(uri);
        try (FileSystem archive = FileSystems.newFileSystem(URI.create(uri), Map.of())) {
            provider.createFile(A);
            assertTrue(Files.isRegularFile(archive.getPath("/a")));
            provider.dispose();
            assertTrue(archive.isOpen());
        }
    }

    @Test
    void openFileSystemOfAnyKindIsUsedAndLeftOpen() throws Exception {
        try (FileSystem memory = Jimfs.newFileSystem("mounts-test", Configuration.unix())) {
            Files.createDirectory(memory.getPath("/folder"));
            mount("jimfs://mounts-test/folder");
            provider.createFile(A);
            assertTrue(Files.isRegularFile(memory.getPath("/folder/a")));
            provider.dispose();
            assertTrue(memory.isOpen());
        }
    }

    @Test
    void fileSystemThatWasClosedByItsOwnerIsOpenedAgain() throws Exception {
        String uri = archiveUri();
        mount(uri);
        FileSystem archive = FileSystems.newFileSystem(URI.create(uri), Map.of());
        provider.createFile(A);
        archive.close();
        assertTrue(provider.fileExists(A));
        provider.dispose();
        assertClosed(uri);
    }

    @Test
    void nullIsNoLocation() {
        ProviderException failure = assertThrows(ProviderException.class, () -> provider.fileExists(null));
        assertEquals(ErrorCode.INVALID_LOCATION, failure.getErrorCode());
    }

    @Test
    void otherSchemesAreRefused() {
        StorageURI location = new StorageURI("file:///tmp");
        ProviderException failure = assertThrows(ProviderException.class, () -> provider.fileExists(location));
        assertEquals(ErrorCode.INVALID_LOCATION, failure.getErrorCode());
    }

    @Test
    void rootOfTheDefaultFileSystemIsARoot() throws Exception {
        StorageURI slash = new StorageURI("java:///");
        assertTrue(provider.folderExists(slash));
        assertTrue(new Mounts().of(slash).entry(slash).isRoot());
        ProviderException failure = assertThrows(ProviderException.class, () -> provider.removeFolder(slash));
        assertEquals(ErrorCode.ACCESS_DENIED, failure.getErrorCode());
    }
}
