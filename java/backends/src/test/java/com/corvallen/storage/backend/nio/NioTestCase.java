package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.OperationContract;
import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;

/** What the tests of this back end share beyond the contract: access to the paths of locations. */
abstract class NioTestCase extends OperationContract {
    NioTestCase(StorageUnderTest.Opener opener) {
        super(opener);
    }

    final NioStorage nio() {
        return (NioStorage) storage;
    }

    final Path path(String... names) throws Exception {
        return nio().path(names);
    }

    /** Makes a link whose target is taken as it is written. */
    final StorageURI link(String target, String... names) throws Exception {
        StorageURI location = at(names);
        Path path = path(names);
        Files.createSymbolicLink(path, path.getFileSystem().getPath(target));
        return location;
    }

    final StorageURI pipe(String... names) throws Exception {
        return nio().pipe(names);
    }

    final void assertLink(StorageURI location) throws Exception {
        assertTrue(Files.isSymbolicLink(nio().path(location)), () -> location + " is not a link");
    }

    final void assertNothing(StorageURI location) throws Exception {
        Path path = nio().path(location);
        assertFalse(Files.exists(path, LinkOption.NOFOLLOW_LINKS), () -> path + " exists");
    }

    static String read(Path path) throws IOException {
        return new String(Files.readAllBytes(path), StandardCharsets.UTF_8);
    }

    static Path write(Path path, String content) throws IOException {
        return Files.write(path, content.getBytes(StandardCharsets.UTF_8));
    }
}
