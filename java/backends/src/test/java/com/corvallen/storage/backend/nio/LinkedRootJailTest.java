package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import java.nio.file.Path;
import org.junit.jupiter.api.Test;

/** The jail of a mount whose property names the root through a link. */
class LinkedRootJailTest extends JailContract {
    LinkedRootJailTest() {
        super(LinkedRootJailTest::open);
    }

    private static NioStorage open() throws Exception {
        Path real = NioStorage.temporaryFolder();
        Path alias = Files.createSymbolicLink(real.resolveSibling(real.getFileName() + "-alias"), real);
        return NioStorage.ofFolder(real, alias);
    }

    @Test
    void absoluteLinkByEitherNameStaysInside() throws Exception {
        StorageURI file = file("x", "file");
        Path real = nio().path(file);
        Path alias = real.getParent().resolveSibling(real.getParent().getFileName() + "-alias");
        assertTrue(Files.isSymbolicLink(alias));
        assertFile("x", link(real.toString(), "byName"));
        assertFile("x", link(alias.resolve("file").toString(), "byAlias"));
    }
}
