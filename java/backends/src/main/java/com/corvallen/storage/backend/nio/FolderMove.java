package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;

/**
 * Moves a folder: by one rename, or by a copy. A folder that is replaced is first set aside, restored if the move
 * fails, and removed last, so at every moment both contents exist completely under some name.
 */
final class FolderMove {
    private FolderMove() {}

    static void move(Entry source, Entry target, boolean replace) throws IOException, ProviderException {
        source.requireFolder();
        source.requireNotRoot();
        Path from = source.realPath();
        Path to = target.realPath();
        if (from.equals(to)) {
            return;
        }
        requireApart(from, to, target);
        target.requireParentFolder();
        boolean occupied = requireRoom(target, replace);
        source.requireMovable();
        source.requireNotPinned();
        target.requireNotPinned();
        if (occupied) {
            moveInPlaceOf(source.path, target);
        } else {
            complete(source.path, transfer(source.path, target.path));
        }
    }

    /** Paths of different zip archives would compare as if they were in one. */
    private static void requireApart(Path from, Path to, Entry target) throws ProviderException {
        if (!from.getFileSystem().equals(to.getFileSystem())) {
            return;
        }
        if (to.startsWith(from)) {
            throw target.failure(ErrorCode.INVALID_LOCATION, "lies inside the folder to be moved");
        }
        if (from.startsWith(to)) {
            throw target.failure(ErrorCode.INVALID_LOCATION, "contains the folder to be moved");
        }
    }

    /** Returns whether there is a folder to replace. */
    private static boolean requireRoom(Entry target, boolean replace) throws IOException, ProviderException {
        EntryKind kind = target.kind();
        if (kind == EntryKind.MISSING) {
            return false;
        }
        if (!replace) {
            throw target.failure(ErrorCode.ALREADY_EXISTS, "exists");
        }
        if (kind == EntryKind.FILE) {
            throw target.failure(ErrorCode.NOT_A_FOLDER, "is a file, and a folder does not replace a file");
        }
        target.requireNotRoot();
        return true;
    }

    /** Removes the folder set aside once the new content is in place, even if the source cannot be removed. */
    private static void moveInPlaceOf(Path source, Entry target) throws IOException {
        Path aside = setAside(target);
        CopiedEntries copied;
        try {
            copied = transfer(source, target.path);
        } catch (IOException | RuntimeException e) {
            restore(aside, target, e);
            throw e;
        }
        try {
            complete(source, copied);
        } finally {
            Removal.discard(aside);
        }
    }

    private static Path setAside(Entry target) throws IOException {
        Path aside = Names.hiddenBeside(target.path);
        complete(target.path, transfer(target.path, aside));
        return aside;
    }

    private static void restore(Path aside, Entry target, Exception reported) {
        try {
            complete(aside, transfer(aside, target.path));
        } catch (IOException | RuntimeException e) {
            reported.addSuppressed(
                    new IOException("the former content of " + target.location + " is kept at " + aside, e));
        }
    }

    private static void complete(Path source, CopiedEntries copied) throws IOException {
        if (copied != null) {
            SourceRemoval.remove(source, copied);
        }
    }

    /**
     * Makes a folder arrive at a free name, completely or not at all. Returns what was copied, so that the caller can
     * remove it from the source; null if it was renamed.
     */
    private static CopiedEntries transfer(Path from, Path to) throws IOException {
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

    /**
     * Renaming a folder replaces at most an empty folder. Renaming a link would replace a file that has just been
     * created.
     */
    private static void rename(Path from, Path to) throws IOException {
        if (!Files.isSymbolicLink(from) || !Renaming.linked(from, to)) {
            Files.move(from, to, StandardCopyOption.ATOMIC_MOVE);
        }
    }

    /** Copies beside the target first, so that nobody sees half a folder, where a complete one can be renamed. */
    private static CopiedEntries copy(Path from, Path to) throws IOException {
        boolean renames = FileSystemTraits.renamesWholeFolders(to.getFileSystem());
        Path temporary = renames ? Names.hiddenBeside(to) : to;
        TreeCopy copier = TreeCopy.begin(from, temporary);
        try {
            CopiedEntries copied = copier.fill();
            if (renames) {
                Interruption.check();
                Files.move(temporary, to, StandardCopyOption.ATOMIC_MOVE);
                Durability.forceFolder(to.getParent());
            }
            return copied;
        } catch (IOException | RuntimeException e) {
            Removal.discard(temporary, e);
            throw e;
        }
    }
}
