package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;

/** Makes a folder arrive at a free name, whole or not at all: by one rename, or as a copy beside the source. */
final class FolderTransfer {
    private FolderTransfer() {}

    /** How it arrived. */
    enum Outcome {
        RENAMED,
        /** The source is still there, for the caller to remove. */
        COPIED
    }

    static Outcome transfer(Path from, Path to) throws IOException {
        boolean within = from.getFileSystem().equals(to.getFileSystem());
        if (within && (Files.isSymbolicLink(from) || FileSystemTraits.renamesWholeFolders(from.getFileSystem()))) {
            try {
                Files.move(from, to, StandardCopyOption.ATOMIC_MOVE);
                return Outcome.RENAMED;
            } catch (AtomicMoveNotSupportedException e) {
                // Another disk of the same file system.
            }
        }
        copy(from, to);
        return Outcome.COPIED;
    }

    /** Nobody sees half a folder where it can be renamed when it is complete. */
    private static void copy(Path from, Path to) throws IOException {
        boolean renames = FileSystemTraits.renamesWholeFolders(to.getFileSystem());
        Path temporary = renames ? HiddenNames.beside(to) : to;
        TreeCopier.begin(from, temporary);
        try {
            TreeCopier.fill(from, temporary);
            if (renames) {
                Files.move(temporary, to, StandardCopyOption.ATOMIC_MOVE);
            }
        } catch (IOException | RuntimeException e) {
            Transfers.discard(temporary, e);
            throw e;
        }
    }
}
