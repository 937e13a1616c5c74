package com.corvallen.storage.backend.nio;

import java.io.IOException;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;

/** A test with a folder to move from, and another disk to move to. */
abstract class TwoDisksCase extends NioTestCase {
    NioStorage disk;

    TwoDisksCase() {
        super(NioStorage::ofFolder);
    }

    @BeforeEach
    final void openDisk() throws IOException {
        disk = OtherDisk.open();
    }

    @AfterEach
    final void closeDisk() throws Exception {
        disk.tearDown();
    }
}
