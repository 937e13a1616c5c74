package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileStore;
import java.nio.file.Files;
import java.nio.file.Path;
import org.junit.jupiter.api.Assumptions;

/** A second disk, so that no rename leads there from the usual place. Tests that need it are skipped without one. */
final class OtherDisk {
    private OtherDisk() {}

    static NioStorage open() throws IOException {
        Path disk = Path.of("/dev/shm");
        Assumptions.assumeTrue(Files.isWritable(disk), "no second disk on this machine");
        FileStore temporary = Files.getFileStore(Path.of(System.getProperty("java.io.tmpdir")));
        Assumptions.assumeFalse(Files.getFileStore(disk).equals(temporary), "no second disk on this machine");
        return NioStorage.ofFolder(Files.createTempDirectory(disk, "nio-test").toRealPath());
    }
}
