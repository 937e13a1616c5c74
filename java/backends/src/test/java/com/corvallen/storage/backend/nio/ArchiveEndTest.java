package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.ByteBuffer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.FileTime;
import java.nio.file.attribute.PosixFilePermissions;
import java.nio.file.attribute.UserDefinedFileAttributeView;
import java.util.Map;
import java.util.Set;
import org.junit.jupiter.api.Assumptions;
import org.junit.jupiter.api.Test;

/** A changed archive takes the old one's place when the mount ends; if that fails, nothing is left. */
class ArchiveEndTest extends ArchiveCase {
    private static final String DRAFT = ".storage-archive-a.zip";

    @Test
    void changesAreInTheArchiveAfterTheEnd() throws Exception {
        write(provider, NEW, "content");
        provider.removeFile(OLD);
        provider.close();
        assertEquals(Map.of("new", "content"), files());
        assertEquals(Set.of("a.zip"), names());
    }

    @Test
    void onePrivateFileIsBesideTheArchiveMeanwhile() throws Exception {
        for (int number = 0; number < 10; number++) {
            write(provider, ROOT.resolve("file " + number), "x".repeat(100_000));
        }
        assertEquals(Set.of("a.zip", DRAFT), names());
        assertEquals("rw-------", PosixFilePermissions.toString(Files.getPosixFilePermissions(folder.resolve(DRAFT))));
        try (ProviderChannel open = provider.getChannel(OLD, false, false, /* exclusive= */ true)) {
            ChannelText.write(open, "THERE");
            assertEquals(Set.of("a.zip", DRAFT), names());
        }
        provider.close();
        assertEquals("THERE before", files().get("old"));
        assertEquals(Set.of("a.zip"), names());
    }

    @Test
    void readingMakesNoFile() throws Exception {
        try (ProviderChannel open = provider.getReadOnlyChannel(OLD)) {
            assertEquals("there before", ChannelText.read(open));
            assertEquals(Set.of("a.zip"), names());
        }
    }

    @Test
    void archiveThatWasNotChangedIsNotWritten() throws Exception {
        Object key = Files.getAttribute(archive, "unix:ino");
        assertFails(ErrorCode.NOT_FOUND, () -> provider.removeFile(NEW));
        provider.close();
        assertEquals(key, Files.getAttribute(archive, "unix:ino"));
        assertUntouched();
    }

    @Test
    void archiveThatIsReplacedMeanwhileStaysAsTheOtherLeftIt() throws Exception {
        write(provider, NEW, "content");
        Path other = holding(folder.resolve("other"), "other", "by another");
        Files.move(other, archive, StandardCopyOption.REPLACE_EXISTING);
        assertEquals(
                ROOT.getText(), assertFails(ErrorCode.IN_USE, provider::close).getLocationString());
        assertEquals(Map.of("other", "by another"), files());
        assertEquals(Set.of("a.zip"), names());
    }

    @Test
    void archiveThatIsChangedInPlaceStaysAsTheOtherLeftIt() throws Exception {
        write(provider, NEW, "content");
        holding(archive, "other", "by another");
        assertFails(ErrorCode.IN_USE, provider::close);
        assertEquals(Map.of("other", "by another"), files());
        assertEquals(Set.of("a.zip"), names());
    }

    @Test
    void archiveThatWasChangedSinceItWasOpenedIsNotWrittenTo() throws Exception {
        assertTrue(provider.fileExists(OLD));
        holding(archive, "other", "by another");
        assertFails(ErrorCode.IN_USE, () -> provider.createFile(NEW));
        assertEquals(Set.of("a.zip"), names());
        provider.close();
        assertEquals(Map.of("other", "by another"), files());
    }

    @Test
    void archiveThatIsRemovedMeanwhileIsMissed() throws Exception {
        write(provider, NEW, "content");
        Files.delete(archive);
        assertFails(ErrorCode.IN_USE, provider::close);
        assertEquals(Set.of(), names());
    }

    @Test
    void archiveThatIsOpenForWritingAsAFileIsLeftAlone() throws Exception {
        write(provider, NEW, "content");
        NioProvider other = new NioProvider();
        ProviderChannel open = other.getChannel(new StorageURI("java://" + archive), false, false, false);
        assertFails(ErrorCode.IN_USE, provider::close);
        open.close();
        other.dispose();
        assertUntouched();
    }

    @Test
    void writerThatComesAfterTheEndLeavesNothing() throws Exception {
        Archive closed = Archive.open(archive.toRealPath(), NioStorage.archives());
        closed.close();
        closed.beginWriting();
        assertUntouched();
    }

    @Test
    void failedEndLeavesTheMountUsable() throws Exception {
        write(provider, NEW, "content");
        Files.setLastModifiedTime(archive, FileTime.fromMillis(1_000_000_000_000L));
        assertFails(ErrorCode.IN_USE, provider::close);
        assertUntouched();
        NioProvider next = new NioProvider();
        write(next, NEW, "again");
        next.close();
        assertEquals(Map.of("old", "there before", "new", "again"), files());
    }

    @Test
    void linkToAnArchiveStaysALink() throws Exception {
        Path link = Files.createSymbolicLink(folder.resolve("link.zip"), archive.getFileName());
        mount(link);
        write(provider, NEW, "content");
        provider.close();
        assertTrue(Files.isSymbolicLink(link));
        assertEquals(Map.of("old", "there before", "new", "content"), files());
        assertEquals(Set.of("a.zip", "link.zip"), names());
    }

    @Test
    void permissionsAndUserAttributesStay() throws Exception {
        Files.setPosixFilePermissions(archive, PosixFilePermissions.fromString("rwxr-x--x"));
        boolean has = Files.getFileStore(archive).supportsFileAttributeView("user");
        UserDefinedFileAttributeView user = Files.getFileAttributeView(archive, UserDefinedFileAttributeView.class);
        if (has) {
            user.write("origin", ByteBuffer.wrap("far".getBytes(StandardCharsets.UTF_8)));
        }
        write(provider, NEW, "content");
        provider.close();
        assertEquals("rwxr-x--x", PosixFilePermissions.toString(Files.getPosixFilePermissions(archive)));
        Assumptions.assumeTrue(has, "no user attributes on this disk");
        ByteBuffer value = ByteBuffer.allocate(user.size("origin"));
        user.read("origin", value);
        assertArrayEquals("far".getBytes(StandardCharsets.UTF_8), value.array());
    }

    @Test
    void whatAKilledProcessLeftIsRemoved() throws Exception {
        Files.write(folder.resolve(DRAFT), new byte[1000]);
        Files.write(folder.resolve(".storage-spool-a.zip"), new byte[0]);
        write(provider, NEW, "content");
        provider.close();
        assertEquals(Map.of("old", "there before", "new", "content"), files());
        assertEquals(Set.of("a.zip"), names());
    }

    @Test
    void archiveMayHaveTheLongestName() throws Exception {
        archive = Files.move(archive, folder.resolve("a".repeat(251) + ".zip"));
        mount(archive);
        write(provider, NEW, "content");
        assertEquals(2, names().size());
        provider.close();
        assertEquals(Map.of("old", "there before", "new", "content"), files());
        assertEquals(1, names().size());
    }

    @Test
    void foldersAndMovesAreReadBack() throws Exception {
        provider.createFolder(ROOT.resolve("empty"));
        provider.createFolder(ROOT.resolve("full"));
        write(provider, ROOT.resolve("full").resolve("file"), "content");
        provider.moveFolder(ROOT.resolve("full"), ROOT.resolve("moved"), false);
        provider.moveFile(OLD, ROOT.resolve("full"), /* replace= */ false);
        provider.setLastModified(ROOT.resolve("full"), 1_000_000_000_000L);
        provider.close();
        assertEquals(Map.of("empty/", "", "full", "there before", "moved/", "", "moved/file", "content"), files());
    }

    @Test
    void mountThatFailsIsNotHeldOpen() throws Exception {
        Files.write(archive, new byte[100]);
        ProviderException failure = assertFails(ErrorCode.UNAVAILABLE, () -> provider.fileExists(OLD));
        assertFalse(failure.getMessage().contains("\n"));
        holding(archive, "old", "there before");
        assertTrue(provider.fileExists(OLD));
    }
}
