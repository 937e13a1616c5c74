package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.file.OpenOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.Set;

/** Makes files that only their owner may open, from their first moment on. */
final class PrivateFiles {
    private static final Set<OpenOption> OPTIONS =
            Set.of(StandardOpenOption.READ, StandardOpenOption.WRITE, StandardOpenOption.CREATE_NEW);

    private PrivateFiles() {}

    /** Makes a file; throws FileAlreadyExistsException if anything has the name, be it a link. */
    static FileChannel create(Path path) throws IOException {
        return FileChannel.open(path, OPTIONS, Privacy.ofFile(path));
    }
}
