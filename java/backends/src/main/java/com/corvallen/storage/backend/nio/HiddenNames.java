package com.corvallen.storage.backend.nio;

import java.nio.file.Path;
import java.util.UUID;

/** Names for what is under way. */
final class HiddenNames {
    private static final String PREFIX = ".storage-";

    private HiddenNames() {}

    /** Returns a path in the same folder that nothing has. */
    static Path beside(Path path) {
        return path.resolveSibling(PREFIX + UUID.randomUUID());
    }
}
