package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.net.URI;
import java.nio.file.FileSystem;
import java.nio.file.FileSystems;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import java.util.jar.Attributes;
import java.util.jar.JarOutputStream;
import java.util.jar.Manifest;
import java.util.zip.ZipEntry;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.function.Executable;

/** A storage that is not writable even for root: an archive opened for reading. */
class ReadOnlyArchiveTest extends MountCase {
    private static final String PROPERTY = "storage.mount.read-only";

    private FileSystem archive;

    ReadOnlyArchiveTest() {
        super(PROPERTY);
    }

    @BeforeEach
    void openArchive() throws Exception {
        URI uri = URI.create("jar:" + newMultiReleaseArchive(folder.resolve("a.jar")).toUri());
        // With this setting an archive is read-only; file permissions would not stop root.
        archive = FileSystems.newFileSystem(uri, Map.of("releaseVersion", "11", "multi-release", "11"));
        assertTrue(archive.isReadOnly());
        mount(uri);
    }

    private static Path newMultiReleaseArchive(Path file) throws Exception {
        Manifest manifest = new Manifest();
        manifest.getMainAttributes().put(Attributes.Name.MANIFEST_VERSION, "1.0");
        manifest.getMainAttributes().put(Attributes.Name.MULTI_RELEASE, "true");
        try (JarOutputStream archive = new JarOutputStream(Files.newOutputStream(file), manifest)) {
            archive.putNextEntry(new ZipEntry("file"));
            archive.putNextEntry(new ZipEntry("folder/empty/"));
        }
        return file;
    }

    @AfterEach
    void closeArchive() throws Exception {
        provider.dispose();
        archive.close();
    }

    private static StorageURI at(String path) {
        return new StorageURI("java://read-only/" + path);
    }

    @Test
    void readingIsAllowed() throws Exception {
        assertTrue(provider.fileExists(at("file")));
        assertTrue(provider.folderExists(at("folder/empty")));
        assertEquals(2, provider.listFolder(at("")).length - 1, "file and folder beside META-INF");
        provider.getReadOnlyChannel(at("file")).close();
    }

    @Test
    void nothingIsWritable() throws Exception {
        assertFalse(provider.getFileAttributes(at("file")).isWritable());
        assertFalse(provider.getFolderAttributes(at("folder")).isWritable());
    }

    @Test
    void everyChangeIsDenied() throws Exception {
        for (Executable change : new Executable[] {
            () -> provider.createFile(at("new")),
            () -> provider.createFolder(at("new")),
            () -> provider.removeFile(at("file")),
            () -> provider.removeFolder(at("folder/empty")),
            () -> provider.removeFolderRecursively(at("folder")),
            () -> provider.setLastModified(at("file"), 0),
            () -> provider.getChannel(at("file"), false, true, false),
            () -> provider.getChannel(at("new"), true, true, false),
            () -> provider.moveFile(at("file"), at("moved"), false),
            () -> provider.moveFolder(at("folder"), at("moved"), false),
            () -> provider.moveFile(at("file"), new StorageURI("java://" + folder + "/stolen"), false),
            () -> provider.moveFolder(at("folder"), new StorageURI("java://" + folder + "/stolen"), false)
        }) {
            ProviderException failure = assertThrows(ProviderException.class, change);
            assertEquals(ErrorCode.ACCESS_DENIED, failure.getErrorCode(), failure.getMessage());
        }
        assertFalse(Files.exists(folder.resolve("stolen")));
        assertTrue(provider.fileExists(at("file")));
        assertTrue(provider.folderExists(at("folder/empty")));
    }
}
