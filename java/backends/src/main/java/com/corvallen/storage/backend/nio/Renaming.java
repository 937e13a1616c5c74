package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.CopyOption;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.ReadOnlyFileSystemException;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.FileTime;
import java.util.Objects;

/** Gives a file or link another name in the same file system. */
final class Renaming {
    private Renaming() {}

    /**
     * Renames, in one step as seen by others.
     *
     * @param replace whether a file at the target is replaced; if not, FileAlreadyExistsException
     * @throws AtomicMoveNotSupportedException if it takes more than a rename, nothing has happened then
     */
    static void rename(Path from, Path to, boolean replace) throws IOException, ProviderException {
        if (replace) {
            atomically(from, to);
        } else if (!FileSystemTraits.createsExclusively(from.getFileSystem()) || !linked(from, to)) {
            FileSystemLocks.locked(from.getFileSystem(), () -> {
                refuseTaken(to);
                atomically(from, to);
            });
        }
    }

    /** As rename, and where the file system has no atomic one, without. */
    static void renameAnyhow(Path from, Path to, boolean replace) throws IOException, ProviderException {
        try {
            rename(from, to, replace);
        } catch (AtomicMoveNotSupportedException e) {
            CopyOption[] options = replace ? new CopyOption[] {StandardCopyOption.REPLACE_EXISTING} : new CopyOption[0];
            Files.move(from, to, options);
        }
    }

    private static void refuseTaken(Path path) throws IOException {
        if (EntryKind.isTaken(path)) {
            throw new FileAlreadyExistsException(path.toString());
        }
    }

    /** An atomic move replaces by itself on some file systems and asks for the option on others. */
    private static void atomically(Path from, Path to) throws IOException {
        if (!FileSystemTraits.movesWrittenFiles(from.getFileSystem())) {
            ArchiveCopy.copy(from, to);
            Files.delete(from);
            return;
        }
        boolean keepsTime = FileSystemTraits.renamesWithTime(from.getFileSystem());
        FileTime time = keepsTime ? null : Files.getLastModifiedTime(from, LinkOption.NOFOLLOW_LINKS);
        try {
            Files.move(from, to, StandardCopyOption.ATOMIC_MOVE, StandardCopyOption.REPLACE_EXISTING);
            if (!keepsTime) {
                Files.setLastModifiedTime(to, time);
            }
        } catch (ReadOnlyFileSystemException e) {
            throw e;
        } catch (UnsupportedOperationException e) {
            throw new AtomicMoveNotSupportedException(from.toString(), to.toString(), e.getMessage());
        }
    }

    /**
     * Renames without replacing, by a second name and the removal of the first. A rename replaces whatever is there,
     * and to look first leaves a moment in which another process may create a file that would be lost; a link refuses.
     * A newer file that someone puts in place of the source meanwhile stays there.
     *
     * @return false if the file system has no hard links, or not here; nothing has happened then
     */
    static boolean linked(Path from, Path to) throws IOException {
        BasicFileAttributes before = attributesOf(from);
        try {
            Files.createLink(to, from);
        } catch (FileAlreadyExistsException e) {
            throw e;
        } catch (FileSystemException | UnsupportedOperationException e) {
            return false;
        }
        BasicFileAttributes linked = attributesOf(to);
        try {
            SpareName.remove(from, to, linked != null ? linked : before);
        } catch (InUseException e) {
            throw e;
        } catch (IOException e) {
            takeBack(to, linked, e);
            throw e;
        }
        return true;
    }

    /** Undoes what has failed half way, unless others have done something with it. */
    private static void takeBack(Path to, BasicFileAttributes linked, IOException reported) {
        try {
            if (linked != null) {
                SpareName.removeIf(to, aside -> Objects.equals(aside.fileKey(), linked.fileKey()));
            }
        } catch (NoSuchFileException e) {
            // Someone else has taken it away.
        } catch (IOException e) {
            reported.addSuppressed(e);
        }
    }

    private static BasicFileAttributes attributesOf(Path path) throws IOException {
        return EntryKind.attributesOf(path, LinkOption.NOFOLLOW_LINKS);
    }
}
