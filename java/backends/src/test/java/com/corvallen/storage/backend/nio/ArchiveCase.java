package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import java.util.zip.ZipEntry;
import java.util.zip.ZipInputStream;
import java.util.zip.ZipOutputStream;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.function.Executable;

/** A test with a mounted archive in a folder of its own; the archive holds the file "old". */
abstract class ArchiveCase extends MountCase {
    static final StorageURI ROOT = new StorageURI("java://case/");
    static final StorageURI OLD = new StorageURI("java://case/old");
    static final StorageURI NEW = new StorageURI("java://case/new");
    static final String PROPERTY = "storage.mount.case";

    Path archive;

    ArchiveCase() {
        super(PROPERTY);
    }

    @BeforeEach
    final void mountArchive() throws Exception {
        archive = holding(folder.resolve("a.zip"), "old", "there before");
        mount(archive);
    }

    static void mount(Path file) {
        System.setProperty(PROPERTY, "jar:" + file.toUri());
    }

    /** Makes an archive that holds one file. */
    static Path holding(Path archive, String name, String content) throws Exception {
        try (ZipOutputStream out = new ZipOutputStream(Files.newOutputStream(archive))) {
            out.putNextEntry(new ZipEntry(name));
            out.write(content.getBytes(StandardCharsets.UTF_8));
        }
        return archive;
    }

    /** Returns the files that other programs find in the archive. */
    final Map<String, String> files() throws Exception {
        Map<String, String> files = new TreeMap<>();
        try (ZipInputStream entries = new ZipInputStream(Files.newInputStream(archive))) {
            for (ZipEntry entry = entries.getNextEntry(); entry != null; entry = entries.getNextEntry()) {
                files.put(entry.getName(), new String(entries.readAllBytes(), StandardCharsets.UTF_8));
            }
        }
        return files;
    }

    /** Returns the names in the folder of the archive. */
    final Set<String> names() throws Exception {
        try (Stream<Path> all = Files.list(folder)) {
            return all.map(path -> path.getFileName().toString()).collect(Collectors.toSet());
        }
    }

    final void assertUntouched() throws Exception {
        assertEquals(Map.of("old", "there before"), files());
        assertEquals(Set.of("a.zip"), names());
    }

    static void write(NioProvider provider, StorageURI file, String content) throws Exception {
        try (ProviderChannel channel = provider.getChannel(file, /* create= */ true, /* truncate= */ true, false)) {
            ChannelText.write(channel, content);
        }
    }

    static ProviderException assertFails(ErrorCode code, Executable operation) {
        ProviderException failure = assertThrows(ProviderException.class, operation);
        assertEquals(code, failure.getErrorCode(), failure.getMessage());
        return failure;
    }
}
