package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.Objects;
import java.util.function.Predicate;

/**
 * Removes the name of a file whose content is safe elsewhere, and nothing that someone else has put there.
 *
 * <p>To look first and remove then leaves a moment in which another process may rename a newer file into place, which
 * would be lost. So the name is first changed to one that nobody else knows. What has that name is looked at, and
 * removed or put back.
 */
final class SpareName {
    private SpareName() {}

    /**
     * Removes one of the two names of a file on a disk. If it is a name of another file by now, it stays.
     *
     * @param other the name that the file keeps
     * @param known what the file was known to be, in case someone else has taken the other name away
     * @throws NoSuchFileException if nothing has the name
     */
    static void remove(Path name, Path other, BasicFileAttributes known) throws IOException {
        BasicFileAttributes present = attributesOf(name);
        if (present == null) {
            throw new NoSuchFileException(name.toString());
        }
        if (isSameFile(present, known)) {
            removeIf(name, aside -> isSameFile(aside, attributesOrNull(other)) || isUnchanged(aside, known));
        }
    }

    /** Removes a file if it is what it was known to be, and returns whether it was. */
    static boolean removeUnchanged(Path name, BasicFileAttributes known) throws IOException {
        return isUnchanged(attributesOf(name), known) && removeIf(name, aside -> isUnchanged(aside, known));
    }

    /**
     * Removes what has a name if it passes a test.
     *
     * @param test is given its attributes; nobody else knows the file's name while it runs
     */
    static boolean removeIf(Path name, Predicate<BasicFileAttributes> test) throws IOException {
        if (!FileSystemTraits.createsExclusively(name.getFileSystem())) {
            return removeDirectlyIf(name, test);
        }
        Path aside = HiddenNames.beside(name);
        Files.move(name, aside, StandardCopyOption.ATOMIC_MOVE);
        BasicFileAttributes found = attributesOf(aside);
        if (found == null || test.test(found)) {
            Files.deleteIfExists(aside);
            return true;
        }
        putBack(aside, name);
        return false;
    }

    /** For storages that only this process uses, and that have no links to put something back with. */
    private static boolean removeDirectlyIf(Path name, Predicate<BasicFileAttributes> test) throws IOException {
        BasicFileAttributes found = attributesOf(name);
        if (found != null && !test.test(found)) {
            return false;
        }
        Files.deleteIfExists(name);
        return true;
    }

    private static void putBack(Path aside, Path name) throws IOException {
        try {
            linkBack(aside, name);
        } catch (FileAlreadyExistsException e) {
            throw new InUseException(
                    name.toString(),
                    "replaced more than once while it was moved; one version is kept as " + aside.getFileName());
        }
    }

    /** A link does not replace what has taken the name by now. */
    private static void linkBack(Path aside, Path name) throws IOException {
        try {
            Files.createLink(name, aside);
        } catch (FileAlreadyExistsException e) {
            throw e;
        } catch (FileSystemException | UnsupportedOperationException e) {
            // A disk without links, or a folder: this looks for what has the name, and renames then.
            Files.move(aside, name);
            return;
        }
        Files.delete(aside);
    }

    private static boolean isSameFile(BasicFileAttributes one, BasicFileAttributes other) {
        return one != null && other != null && Objects.equals(one.fileKey(), other.fileKey());
    }

    private static boolean isUnchanged(BasicFileAttributes one, BasicFileAttributes other) {
        return one != null && other != null && FileIdentity.isUnchanged(one, other);
    }

    private static BasicFileAttributes attributesOf(Path path) throws IOException {
        return EntryKind.attributesOf(path, LinkOption.NOFOLLOW_LINKS);
    }

    /** A name that cannot be looked at is none that the file is known to keep. */
    private static BasicFileAttributes attributesOrNull(Path path) {
        try {
            return attributesOf(path);
        } catch (IOException e) {
            return null;
        }
    }
}
