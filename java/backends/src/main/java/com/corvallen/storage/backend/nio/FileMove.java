package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;

/** Moves one file or link: by a rename, or as a copy that takes the target's name when it is complete. */
final class FileMove {
    private FileMove() {}

    static void move(Entry source, Entry target, boolean replace) throws IOException, ProviderException {
        source.requireFile();
        if (!replace) {
            if (!takesFreeName(source, target)) {
                moveTo(source, target, /* replace= */ false);
            }
        } else if (source.isLink()) {
            requireOther(source, target);
            moveTo(source, target, /* replace= */ true);
        } else {
            moveTo(source, target.followed(), /* replace= */ true);
        }
    }

    /** A link in the place of the file that it leads to would lead nowhere, and the content would be lost. */
    private static void requireOther(Entry source, Entry target) throws IOException, ProviderException {
        boolean isItsOwn = !target.isLink()
                && target.kind() == EntryKind.FILE
                && Files.exists(source.path)
                && source.fileSystem().equals(target.fileSystem())
                && Files.isSameFile(source.path, target.path);
        if (isItsOwn && !source.realPath().equals(target.realPath())) {
            throw target.failure(ErrorCode.INVALID_LOCATION, "is what the link to be moved leads to");
        }
    }

    private static void moveTo(Entry source, Entry target, boolean replace) throws IOException, ProviderException {
        EntryKind present = target.kind();
        if (present != EntryKind.MISSING && source.realPath().equals(target.realPath())) {
            return;
        }
        target.requireParentFolder();
        requireRoom(present, target, replace);
        source.requireNotPinned();
        target.requireNotPinned();
        if (!source.fileSystem().equals(target.fileSystem())) {
            FileTransfer.transfer(source, target, replace);
        } else if (present != EntryKind.MISSING && areHardLinks(source, target)) {
            // A rename does nothing between two names of one file; the target holds what it should already.
            SpareName.remove(source.path, target.path, attributesOf(source.path));
        } else {
            rename(source, target, replace);
        }
    }

    /**
     * Moves to a name that nothing has, as most moves do. The system looks at the target better than this class could
     * before; what it refuses is left for the checks.
     *
     * @return false if nothing has happened
     */
    private static boolean takesFreeName(Entry source, Entry target) throws IOException {
        if (!source.fileSystem().equals(target.fileSystem())
                || !FileSystemTraits.createsExclusively(source.fileSystem())) {
            return false;
        }
        try {
            return Renaming.linked(source.path, target.path);
        } catch (FileAlreadyExistsException e) {
            return false;
        }
    }

    private static void requireRoom(EntryKind present, Entry target, boolean replace)
            throws IOException, ProviderException {
        if (present == EntryKind.MISSING) {
            return;
        }
        if (!replace) {
            throw target.failure(ErrorCode.ALREADY_EXISTS, "exists");
        }
        if (present == EntryKind.FOLDER) {
            throw target.failure(ErrorCode.NOT_A_FILE, "is a folder, which a file does not replace");
        }
        BasicFileAttributes own = attributesOf(target.path);
        if (own != null && own.isOther()) {
            throw target.failure(ErrorCode.NOT_SUPPORTED, "is neither a file nor a folder, and is not replaced");
        }
    }

    private static void rename(Entry source, Entry target, boolean replace) throws IOException, ProviderException {
        try {
            if (replace && isRegular(source) && isRegular(target)) {
                Replacement.rename(source.path, target.path);
            } else {
                Renaming.rename(source.path, target.path, replace);
            }
        } catch (AtomicMoveNotSupportedException e) {
            FileTransfer.transfer(source, target, replace);
        }
    }

    static boolean isRegular(Entry entry) throws IOException {
        BasicFileAttributes attributes = attributesOf(entry.path);
        return attributes != null && attributes.isRegularFile();
    }

    private static BasicFileAttributes attributesOf(Path path) throws IOException {
        return EntryKind.attributesOf(path, LinkOption.NOFOLLOW_LINKS);
    }

    /** The count tells two names of one file from one name that the file system knows in two spellings. */
    private static boolean areHardLinks(Entry source, Entry target) throws IOException {
        return FileSystemTraits.createsExclusively(source.fileSystem())
                && source.fileSystem().supportedFileAttributeViews().contains("unix")
                && !source.isLink()
                && !target.isLink()
                && Files.exists(target.path)
                && Files.isSameFile(source.path, target.path)
                && (int) Files.getAttribute(source.path, "unix:nlink", LinkOption.NOFOLLOW_LINKS) > 1;
    }
}
