package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.charset.Charset;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.zip.ZipEntry;
import java.util.zip.ZipOutputStream;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;

/** Archives made by other programs, with names that cannot be used here. */
class ArchiveNamesTest extends MountCase {
    private static final String PROPERTY = "storage.mount.archive-names";
    private static final StorageURI ROOT = new StorageURI("java://archive-names/");

    ArchiveNamesTest() {
        super(PROPERTY);
    }

    private void mount(Charset charset, String... names) throws Exception {
        Path file = folder.resolve("a.zip");
        try (ZipOutputStream archive = new ZipOutputStream(Files.newOutputStream(file), charset)) {
            for (String name : names) {
                archive.putNextEntry(new ZipEntry(name));
            }
        }
        mount("jar:" + file.toUri());
    }

    private static void assertFails(ErrorCode code, Executable operation) {
        assertEquals(code, assertThrows(ProviderException.class, operation).getErrorCode());
    }

    @Test
    void archiveWithANameThatIsNotUtf8IsRefusedAsAWhole() throws Exception {
        mount(StandardCharsets.ISO_8859_1, "a\u00ffb");
        assertFails(ErrorCode.UNAVAILABLE, () -> provider.listFolder(ROOT));
    }

    @Test
    void archiveWithANameThatLeadsOutIsRefusedAsAWhole() throws Exception {
        mount(StandardCharsets.UTF_8, "../up");
        assertFails(ErrorCode.UNAVAILABLE, () -> provider.listFolder(ROOT));
    }

    @Test
    void archiveWithANameOfAFileAndAFolderIsRefusedAsAWhole() throws Exception {
        for (String[] names : new String[][] {{"a", "a/b"}, {"/a", "a/b/"}, {"x/a", "x//a/b/c"}}) {
            mount(StandardCharsets.UTF_8, names);
            assertFails(ErrorCode.UNAVAILABLE, () -> provider.listFolder(ROOT));
        }
    }

    @Test
    void folderWithItsOwnEntryIsNoSuchName() throws Exception {
        mount(StandardCharsets.UTF_8, "a/", "a/b", "a2");
        assertEquals(2, provider.listFolder(ROOT).length);
    }

    @Test
    void nameWithABackslashIsShownAndRefused() throws Exception {
        mount(StandardCharsets.UTF_8, "d\\e");
        assertEquals("d\\e", provider.listFolder(ROOT)[0].getName());
        StorageURI file = ROOT.resolve("d\\e");
        assertFails(ErrorCode.INVALID_LOCATION, () -> provider.fileExists(file));
        assertFails(ErrorCode.INVALID_LOCATION, () -> provider.getReadOnlyChannel(file));
    }
}
