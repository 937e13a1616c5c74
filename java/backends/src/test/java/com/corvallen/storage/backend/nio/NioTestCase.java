package com.corvallen.storage.backend.nio;

import com.corvallen.storage.contract.OperationContract;
import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;

/** What the tests of this back end share beyond the contract: the paths behind the locations. */
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

    /** Makes a link; the target is taken as it is written. */
    final StorageURI link(String target, String... names) throws Exception {
        StorageURI location = at(names);
        Path path = path(names);
        Files.createSymbolicLink(path, path.getFileSystem().getPath(target));
        return location;
    }

    static String read(Path path) throws IOException {
        return new String(Files.readAllBytes(path), StandardCharsets.UTF_8);
    }

    static Path write(Path path, String content) throws IOException {
        return Files.write(path, content.getBytes(StandardCharsets.UTF_8));
    }
}
