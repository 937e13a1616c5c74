package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.Objects;
import java.util.function.Predicate;

/**
 * Removes a name of a file whose content is safe elsewhere, but nothing that someone else has put there.
 *
 * <p>Checking first and removing then would leave a moment in which another process may rename a newer file into place,
 * which would be lost. So the name is first changed to a hidden one that nobody else knows. What now has that name is
 * checked, and removed or put back.
 */
final class SpareName {
    private SpareName() {}

    /**
     * Removes one of the two names of a file on disk. If the name belongs to another file by now, it stays.
     *
     * @param other the name that the file keeps
     * @param known the file's attributes from before, in case someone else has removed the other name
     * @throws NoSuchFileException if nothing has the name
     */
    static void remove(Path name, Path other, BasicFileAttributes known) throws IOException {
        BasicFileAttributes present = EntryKind.ownAttributesOf(name);
        if (present == null) {
            throw new NoSuchFileException(name.toString());
        }
        if (isSameFile(present, known)) {
            removeIf(name, aside -> isSameFile(aside, attributesOrNull(other)) || isUnchanged(aside, known));
        }
    }

    /** Removes a file if it is unchanged, and returns whether it was. */
    static boolean removeUnchanged(Path name, BasicFileAttributes known) throws IOException {
        return isUnchanged(EntryKind.ownAttributesOf(name), known)
                && removeIf(name, aside -> isUnchanged(aside, known));
    }

    /**
     * Removes what has a name if its attributes pass a test.
     *
     * @param test runs while nobody else knows the name
     */
    static boolean removeIf(Path name, Predicate<BasicFileAttributes> test) throws IOException {
        if (!FileSystemTraits.createsExclusively(name.getFileSystem())) {
            return removeDirectlyIf(name, test);
        }
        Path aside = Names.hiddenBeside(name);
        Files.move(name, aside, StandardCopyOption.ATOMIC_MOVE);
        BasicFileAttributes found = EntryKind.ownAttributesOf(aside);
        if (found == null || test.test(found)) {
            Files.deleteIfExists(aside);
            return true;
        }
        putBack(aside, name);
        return false;
    }

    /** For storages that only this process uses, and that have no links for putting something back. */
    private static boolean removeDirectlyIf(Path name, Predicate<BasicFileAttributes> test) throws IOException {
        BasicFileAttributes found = EntryKind.ownAttributesOf(name);
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

    /** Adds a link, because that does not replace what has taken the name by now. */
    private static void linkBack(Path aside, Path name) throws IOException {
        try {
            Files.createLink(name, aside);
        } catch (FileAlreadyExistsException e) {
            throw e;
        } catch (FileSystemException | UnsupportedOperationException e) {
            // A disk without links, or a folder: this checks that the name is free, and renames.
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

    /** Returns null if the name cannot be examined: then the file is not known to keep it. */
    private static BasicFileAttributes attributesOrNull(Path path) {
        try {
            return EntryKind.ownAttributesOf(path);
        } catch (IOException e) {
            return null;
        }
    }
}
