package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;

/** Moves one file or link: by a rename, or as a copy that takes the target's name when it is complete. */
final class FileMove {
    private FileMove() {}

    static void move(Entry source, Entry target, boolean replace) throws IOException, ProviderException {
        source.requireFile();
        if (!replace && takesFreeName(source, target)) {
            return;
        }
        EntryKind present = target.kind();
        if (present != EntryKind.MISSING && source.realPath().equals(target.realPath())) {
            return;
        }
        target.requireParentFolder();
        requireRoom(present, target, replace);
        source.requireNotPinned();
        target.requireNotPinned();
        if (!source.fileSystem().equals(target.fileSystem())) {
            transfer(source, target, replace);
        } else if (present != EntryKind.MISSING && areHardLinks(source, target)) {
            // A rename does nothing between two names of one file; the target holds what it should already.
            Files.delete(source.path);
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

    private static void requireRoom(EntryKind present, Entry target, boolean replace) throws ProviderException {
        if (present == EntryKind.MISSING) {
            return;
        }
        if (!replace) {
            throw target.failure(ErrorCode.ALREADY_EXISTS, "exists");
        }
        if (present == EntryKind.FOLDER) {
            throw target.failure(ErrorCode.NOT_A_FILE, "is a folder, which a file does not replace");
        }
    }

    private static void rename(Entry source, Entry target, boolean replace) throws IOException, ProviderException {
        try {
            Renaming.rename(source.path, target.path, replace);
        } catch (AtomicMoveNotSupportedException e) {
            transfer(source, target, replace);
        }
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

    private static void transfer(Entry source, Entry target, boolean replace) throws IOException, ProviderException {
        Transfers.requireMovable(source);
        Path temporary = HiddenNames.beside(target.path);
        try {
            TreeCopier.begin(source.path, temporary);
            Renaming.renameAnyhow(temporary, target.path, replace);
        } catch (IOException | RuntimeException | ProviderException e) {
            Transfers.discard(temporary, e);
            throw e;
        }
        Files.delete(source.path);
    }
}
