package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.Path;

/**
 * Moves a folder. A folder that is replaced is set aside first, comes back if the move fails, and is removed last, so
 * that at every moment both contents exist whole under some name.
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
        Transfers.requireMovable(source);
        source.requireNotPinned();
        target.requireNotPinned();
        if (occupied) {
            moveInPlaceOf(source.path, target);
        } else {
            complete(source.path, FolderTransfer.transfer(source.path, target.path));
        }
    }

    /** Paths of different zip archives compare as if they were of one. */
    private static void requireApart(Path from, Path to, Entry target) throws ProviderException {
        if (!from.getFileSystem().equals(to.getFileSystem())) {
            return;
        }
        if (to.startsWith(from)) {
            throw target.failure(ErrorCode.INVALID_LOCATION, "lies inside the folder to be moved");
        }
        if (from.startsWith(to)) {
            throw target.failure(ErrorCode.INVALID_LOCATION, "holds the folder to be moved");
        }
    }

    /** Returns whether a folder is there that is to be replaced. */
    private static boolean requireRoom(Entry target, boolean replace) throws IOException, ProviderException {
        EntryKind kind = target.kind();
        if (kind == EntryKind.MISSING) {
            return false;
        }
        if (!replace) {
            throw target.failure(ErrorCode.ALREADY_EXISTS, "exists");
        }
        if (kind == EntryKind.FILE) {
            throw target.failure(ErrorCode.NOT_A_FOLDER, "is a file, which a folder does not replace");
        }
        target.requireNotRoot();
        return true;
    }

    /** What was set aside goes once the new content is there, even if the source cannot be removed. */
    private static void moveInPlaceOf(Path source, Entry target) throws IOException {
        Path aside = setAside(target);
        CopiedEntries copied;
        try {
            copied = FolderTransfer.transfer(source, target.path);
        } catch (IOException | RuntimeException e) {
            restore(aside, target, e);
            throw e;
        }
        try {
            complete(source, copied);
        } finally {
            TreeDeleter.discard(aside);
        }
    }

    private static Path setAside(Entry target) throws IOException {
        Path aside = HiddenNames.beside(target.path);
        complete(target.path, FolderTransfer.transfer(target.path, aside));
        return aside;
    }

    private static void restore(Path aside, Entry target, Exception reported) {
        try {
            complete(aside, FolderTransfer.transfer(aside, target.path));
        } catch (IOException | RuntimeException e) {
            reported.addSuppressed(new IOException("what " + target.location + " held is kept at " + aside, e));
        }
    }

    private static void complete(Path source, CopiedEntries copied) throws IOException {
        if (copied != null) {
            SourceRemoval.remove(source, copied);
        }
    }
}
