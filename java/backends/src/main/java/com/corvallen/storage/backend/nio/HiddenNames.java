package com.corvallen.storage.backend.nio;

import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.util.UUID;

/** Names for what is under way. */
final class HiddenNames {
    private static final String PREFIX = ".storage-";

    /** As long as names may be on the disks of this platform, in bytes. */
    private static final int MAX_LENGTH = 255;

    private HiddenNames() {}

    /** Returns a path in the same folder that nothing has. */
    static Path beside(Path path) {
        return path.resolveSibling(PREFIX + UUID.randomUUID());
    }

    /** Returns always the same path in the same folder: a prefix and the name, or a digest of one that is too long. */
    static Path of(Path path, String prefix) {
        String name = path.getFileName().toString();
        byte[] bytes = name.getBytes(StandardCharsets.UTF_8);
        boolean fits = prefix.length() + bytes.length <= MAX_LENGTH;
        return path.resolveSibling(prefix + (fits ? name : UUID.nameUUIDFromBytes(bytes)));
    }
}
