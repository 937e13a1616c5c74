package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.StorageURI;
import java.net.URI;
import java.nio.file.Files;
import java.nio.file.Path;
import org.junit.jupiter.api.Test;

/** Names on disk that are not text. */
class OddNamesTest extends NioTestCase {
    private static final String BYTES = "a%FFb";
    private static final String TEXT = "a\uefffb";

    OddNamesTest() {
        super(NioStorage::ofFolder);
    }

    /** The URI of a folder that exists ends in a slash. */
    private static Path raw(Path folder, String escaped) {
        return Path.of(URI.create(folder.toUri() + escaped));
    }

    @Test
    void nameIsListedAndFoundByWhatIsListed() throws Exception {
        write(Files.createFile(raw(path(), BYTES)), "hello");
        FolderListEntry[] listed = provider.listFolder(at());
        assertArrayEquals(new FolderListEntry[] {new FolderListEntry(TEXT, /* folder= */ false)}, listed);
        StorageURI file = at(listed[0].getName());
        assertTrue(provider.fileExists(file));
        assertEquals(5, provider.getFileAttributes(file).getSize());
        try (ProviderChannel channel = provider.getReadOnlyChannel(file)) {
            assertEquals("hello", ChannelText.read(channel));
        }
        provider.moveFile(file, at("plain"), /* replace= */ false);
        assertEquals("hello", read(path("plain")));
        provider.moveFile(at("plain"), file, /* replace= */ false);
        assertEquals("hello", read(raw(path(), BYTES)));
        provider.removeFile(file);
        assertEquals(0, provider.listFolder(at()).length);
    }

    @Test
    void folderIsEnteredAndRemoved() throws Exception {
        Path folder = Files.createDirectory(raw(path(), BYTES));
        write(Files.createFile(raw(Files.createDirectory(raw(path(), "x%FE")), "%80")), "y");
        Files.createFile(folder.resolve("child"));
        assertEquals("child", provider.listFolder(at(TEXT))[0].getName());
        assertEquals("\uef80", provider.listFolder(at("x\ueffe"))[0].getName());
        provider.createFile(at(TEXT, "\ueffe\u00e4"));
        assertTrue(Files.exists(raw(folder, "%FE%C3%A4")));
        provider.removeFolderRecursively(at(TEXT));
        provider.removeFolderRecursively(at("x\ueffe"));
        assertEquals(0, provider.listFolder(at()).length);
    }

    @Test
    void twoNamesThatLookAlikeInJavaStayApart() throws Exception {
        write(Files.createFile(raw(path(), "%FE")), "fe");
        write(Files.createFile(raw(path(), "%FF")), "ff");
        write(Files.createFile(path().resolve("\ufffd")), "replacement");
        assertFileOnDisk("fe", at("\ueffe"));
        assertFileOnDisk("ff", at("\uefff"));
        assertFileOnDisk("replacement", at("\ufffd"));
        assertEquals(3, provider.listFolder(at()).length);
    }

    private void assertFileOnDisk(String content, StorageURI location) throws Exception {
        try (ProviderChannel channel = provider.getReadOnlyChannel(location)) {
            assertEquals(content, ChannelText.read(channel));
        }
    }

    @Test
    void nameSurvivesAJourneyThroughAnotherStorage() throws Exception {
        write(Files.createFile(raw(Files.createDirectory(raw(path(), "d%FE")), BYTES)), "hello");
        NioStorage memory = NioStorage.ofMemory();
        try {
            StorageURI away = memory.at("away");
            provider.moveFolder(at("d\ueffe"), away, /* replace= */ false);
            assertEquals(TEXT, provider.listFolder(away)[0].getName());
            provider.moveFolder(away, at("back"), /* replace= */ false);
            assertEquals("hello", read(raw(path("back"), BYTES)));
        } finally {
            memory.tearDown();
        }
    }

    @Test
    void spellingThatNoNameHasIsNoLocation() throws Exception {
        // These two bytes are valid UTF-8, so the name is shown as the character that they encode.
        StorageURI odd = at("\uefc3\uefa4");
        assertFails(ErrorCode.INVALID_LOCATION, odd, () -> provider.createFile(odd));
        assertFails(ErrorCode.INVALID_LOCATION, odd, () -> provider.fileExists(odd));
        assertEquals(0, provider.listFolder(at()).length);
    }
}
