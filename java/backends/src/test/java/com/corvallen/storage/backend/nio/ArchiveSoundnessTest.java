package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.StorageURI;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import java.util.TreeMap;
import java.util.zip.ZipEntry;
import java.util.zip.ZipInputStream;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/**
 * Other programs find in an archive what was written to it, even those that read it from the beginning, entry by entry,
 * and check what each entry says about itself.
 */
class ArchiveSoundnessTest extends MountCase {
    private static final String PROPERTY = "storage.mount.sound";
    private static final StorageURI ROOT = new StorageURI("java://sound/");

    /** Other programs read a name correctly only if the entry marks it as UTF-8. */
    private static final String UMLAUT = "gr\u00fc\u00dfe";

    private Path archive;

    ArchiveSoundnessTest() {
        super(PROPERTY);
    }

    @BeforeEach
    void mountArchive() throws Exception {
        archive = NioStorage.newArchive(folder.resolve("a.zip"));
        mount("jar:" + archive.toUri());
    }

    private StorageURI written(StorageURI file, String content) throws Exception {
        try (ProviderChannel channel = provider.getChannel(file, /* create= */ true, false, /* exclusive= */ true)) {
            ChannelText.write(channel, content);
        }
        return file;
    }

    /** Returns the files as a reader finds them that does not know the directory at the end. */
    private Map<String, String> files() throws Exception {
        provider.dispose();
        Map<String, String> files = new TreeMap<>();
        try (ZipInputStream entries = new ZipInputStream(Files.newInputStream(archive), StandardCharsets.ISO_8859_1)) {
            for (ZipEntry entry = entries.getNextEntry(); entry != null; entry = entries.getNextEntry()) {
                if (!entry.isDirectory()) {
                    files.put(entry.getName(), new String(entries.readAllBytes(), StandardCharsets.UTF_8));
                }
            }
        }
        return files;
    }

    @Test
    void writtenFile() throws Exception {
        written(ROOT.resolve("a"), "content");
        assertEquals(Map.of("a", "content"), files());
    }

    @Test
    void writtenFileThatIsMoved() throws Exception {
        provider.moveFile(written(ROOT.resolve("a"), "content"), ROOT.resolve(UMLAUT), /* replace= */ false);
        assertEquals(Map.of(UMLAUT, "content"), files());
    }

    @Test
    void writtenFileThatReplacesAnother() throws Exception {
        written(ROOT.resolve("b"), "old content");
        provider.moveFile(written(ROOT.resolve("a"), "content"), ROOT.resolve("b"), /* replace= */ true);
        provider.moveFile(ROOT.resolve("b"), ROOT.resolve("c"), /* replace= */ false);
        assertEquals(Map.of("c", "content"), files());
    }

    @Test
    void writtenFileInAFolderThatIsMoved() throws Exception {
        StorageURI from = ROOT.resolve("from");
        provider.createFolder(from);
        written(from.resolve(UMLAUT), "content");
        provider.moveFolder(from, ROOT.resolve("to"), /* replace= */ false);
        assertEquals(Map.of("to/" + UMLAUT, "content"), files());
    }

    @Test
    void movedFileKeepsItsTime() throws Exception {
        StorageURI a = written(ROOT.resolve("a"), "content");
        provider.setLastModified(a, 1_000_000_000_000L);
        provider.moveFile(a, ROOT.resolve("b"), /* replace= */ false);
        assertEquals(1_000_000_000_000L, provider.getFileAttributes(ROOT.resolve("b")).getLastModified());
    }
}
