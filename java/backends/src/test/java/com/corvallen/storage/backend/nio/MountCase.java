package com.corvallen.storage.backend.nio;

import java.nio.file.Path;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Timeout;

/** A test with a provider, a folder, and a system property that defines a mount; all are cleaned up at the end. */
@Timeout(60)
abstract class MountCase {
    final NioProvider provider = new NioProvider();
    Path folder;

    private final String property;

    MountCase(String property) {
        this.property = property;
    }

    @BeforeEach
    final void makeFolder() throws Exception {
        folder = NioStorage.temporaryFolder();
    }

    @AfterEach
    final void cleanUp() throws Exception {
        provider.dispose();
        System.clearProperty(property);
        Removal.removeTree(folder);
    }

    final void mount(Object uri) {
        System.setProperty(property, uri.toString());
    }
}
