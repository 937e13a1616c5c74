package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;

/** Makes a folder arrive at a free name, whole or not at all: by one rename, or as a copy beside the source. */
final class FolderTransfer {
    private FolderTransfer() {}

    /** Returns what was copied, for the caller to remove from where it was; null if it was renamed. */
    static CopiedEntries transfer(Path from, Path to) throws IOException {
        boolean within = from.getFileSystem().equals(to.getFileSystem());
        if (within && (Files.isSymbolicLink(from) || FileSystemTraits.renamesWholeFolders(from.getFileSystem()))) {
            try {
                rename(from, to);
                return null;
            } catch (AtomicMoveNotSupportedException e) {
                // Another disk of the same file system.
            }
        }
        return copy(from, to);
    }

    /** A folder replaces nothing but an empty folder. A link to one would replace a file that has just come. */
    private static void rename(Path from, Path to) throws IOException {
        if (!Files.isSymbolicLink(from) || !Renaming.linked(from, to)) {
            Files.move(from, to, StandardCopyOption.ATOMIC_MOVE);
        }
    }

    /** Nobody sees half a folder where it can be renamed when it is complete. */
    private static CopiedEntries copy(Path from, Path to) throws IOException {
        boolean renames = FileSystemTraits.renamesWholeFolders(to.getFileSystem());
        Path temporary = renames ? HiddenNames.beside(to) : to;
        TreeCopier copier = TreeCopier.begin(from, temporary);
        try {
            CopiedEntries copied = copier.fill();
            if (renames) {
                Interruption.check();
                Files.move(temporary, to, StandardCopyOption.ATOMIC_MOVE);
                Durability.forceFolder(to.getParent());
            }
            return copied;
        } catch (IOException | RuntimeException e) {
            Transfers.discard(temporary, e);
            throw e;
        }
    }
}
