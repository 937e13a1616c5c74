package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.io.InputStream;
import java.io.OutputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributeView;
import java.nio.file.attribute.BasicFileAttributes;

/**
 * Copies files within a zip archive. The archive's own moves and copies lose how a name is encoded, and that the size
 * of content written through a channel follows it. Java can still read such an entry, but other programs report the
 * archive as broken. Copying through a stream makes a sound entry.
 */
final class ZipEntryCopy {
    private ZipEntryCopy() {}

    /** Copies one file with its times, and replaces the target once the copy is complete. */
    static void copy(Path from, Path to) throws IOException {
        BasicFileAttributes times = Files.readAttributes(from, BasicFileAttributes.class);
        try (InputStream content = Files.newInputStream(from)) {
            // Not closed after a failure: closing makes it the content of the entry.
            OutputStream out = Files.newOutputStream(to);
            content.transferTo(out);
            out.close();
        }
        Files.getFileAttributeView(to, BasicFileAttributeView.class)
                .setTimes(times.lastModifiedTime(), times.lastAccessTime(), times.creationTime());
    }
}
