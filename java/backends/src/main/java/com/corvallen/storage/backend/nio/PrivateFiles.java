package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.file.OpenOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.Set;

/** Makes files that only their owner may open, from their first moment on. */
final class PrivateFiles {
    private PrivateFiles() {}

    /** Makes a file; throws FileAlreadyExistsException if anything has the name, be it a link. */
    static FileChannel create(Path path) throws IOException {
        return open(path, Set.of(StandardOpenOption.READ, StandardOpenOption.WRITE, StandardOpenOption.CREATE_NEW));
    }

    /** Makes a file that has lost its name when this returns, where the system can, and at its closing elsewhere. */
    static FileChannel createNameless(Path path) throws IOException {
        return open(
                path,
                Set.of(
                        StandardOpenOption.READ,
                        StandardOpenOption.WRITE,
                        StandardOpenOption.CREATE_NEW,
                        StandardOpenOption.DELETE_ON_CLOSE));
    }

    private static FileChannel open(Path path, Set<OpenOption> options) throws IOException {
        return FileChannel.open(path, options, Privacy.ofFile(path));
    }
}
