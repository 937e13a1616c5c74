package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.io.InputStream;
import java.io.OutputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributeView;
import java.nio.file.attribute.BasicFileAttributes;

/**
 * Copies files within a zip archive. The archive's own moves and copies forget how a name is spelled, and that the size
 * of what a channel has written stands behind it: Java still reads the file, and other programs call the archive broken.
 * A stream makes a sound entry.
 */
final class ArchiveCopy {
    private ArchiveCopy() {}

    /** Copies one file with its times, and replaces what is there. The target changes when the copy is complete. */
    static void copy(Path from, Path to) throws IOException {
        BasicFileAttributes times = Files.readAttributes(from, BasicFileAttributes.class);
        try (InputStream content = Files.newInputStream(from)) {
            // Closed only when complete: that is what makes it the content of the entry.
            OutputStream out = Files.newOutputStream(to);
            content.transferTo(out);
            out.close();
        }
        Files.getFileAttributeView(to, BasicFileAttributeView.class)
                .setTimes(times.lastModifiedTime(), times.lastAccessTime(), times.creationTime());
    }
}
