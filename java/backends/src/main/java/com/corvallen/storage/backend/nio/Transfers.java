package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.AccessDeniedException;
import java.nio.file.Files;
import java.nio.file.Path;

/** What moves between file systems have in common. */
final class Transfers {
    private Transfers() {}

    /** Refuses what would fail only after everything has been copied. */
    static void requireMovable(Entry source) throws IOException {
        Path parent = source.path.getParent();
        if (source.fileSystem().isReadOnly() || parent != null && !Files.isWritable(parent)) {
            throw new AccessDeniedException(source.path.toString(), null, "cannot be removed from where it is");
        }
    }

    /** Removes what a failed move has left, be it interrupted; a failure to do so joins the one that is reported. */
    static void discard(Path incomplete, Exception reported) {
        try {
            if (EntryKind.isTaken(incomplete)) {
                TreeDeleter.discard(incomplete);
            }
        } catch (IOException | RuntimeException e) {
            reported.addSuppressed(e);
        }
    }
}
