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
     * Renames in one step, as others see it.
     *
     * @param replace whether a file at the target is replaced; if not, throws FileAlreadyExistsException
     * @throws AtomicMoveNotSupportedException if a rename is not enough; nothing has changed then
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

    /** As rename, but not atomic where the file system has no atomic rename. */
    static void renameAnyhow(Path from, Path to, boolean replace) throws IOException, ProviderException {
        try {
            rename(from, to, replace);
        } catch (AtomicMoveNotSupportedException e) {
            CopyOption[] options = replace ? new CopyOption[] {StandardCopyOption.REPLACE_EXISTING} : new CopyOption[0];
            Files.move(from, to, options);
        }
    }

    /**
     * Renames a file to the name of another one. It takes over owner, group, permissions and user attributes before it
     * becomes visible there. Nothing is forced to disk: a copy of many files would wait for the disk once for each.
     */
    static void replace(Path from, Path to) throws IOException, ProviderException {
        KeptAttributes own = KeptAttributes.of(from);
        KeptAttributes replaced = KeptAttributes.of(to);
        try {
            replaced.giveUserAttributes(from);
            replaced.giveAccessAnew(from);
            rename(from, to, /* replace= */ true);
        } catch (IOException | RuntimeException | ProviderException e) {
            own.restore(from, e);
            throw e;
        }
    }

    private static void refuseTaken(Path path) throws IOException {
        if (EntryKind.isTaken(path)) {
            throw new FileAlreadyExistsException(path.toString());
        }
    }

    /** On some file systems an atomic move replaces without being asked; on others it needs the option. */
    private static void atomically(Path from, Path to) throws IOException {
        if (!FileSystemTraits.movesWrittenFiles(from.getFileSystem())) {
            ZipEntryCopy.copy(from, to);
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
     * Renames without replacing, by adding a second name and removing the first. A plain rename would replace a file
     * that another process creates after the check; adding a name fails instead. If someone puts a newer file in place
     * of the source during this, it stays there.
     *
     * @return false if there are no hard links here; nothing has changed then
     */
    static boolean linked(Path from, Path to) throws IOException {
        BasicFileAttributes before = EntryKind.ownAttributesOf(from);
        try {
            Files.createLink(to, from);
        } catch (FileAlreadyExistsException e) {
            throw e;
        } catch (FileSystemException | UnsupportedOperationException e) {
            return false;
        }
        BasicFileAttributes linked = EntryKind.ownAttributesOf(to);
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

    /** Removes the second name after a failure, unless others have changed it. */
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
}
