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

/** Moves one file or link: by a rename, or by a copy that gets the target's name once it is complete. */
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

    /** Refuses to replace a file by a link to it: the link would lead nowhere, and the content would be lost. */
    private static void requireOther(Entry source, Entry target) throws IOException, ProviderException {
        boolean isItsOwn = !target.isLink()
                && target.kind() == EntryKind.FILE
                && Files.exists(source.path)
                && source.fileSystem().equals(target.fileSystem())
                && Files.isSameFile(source.path, target.path);
        if (isItsOwn && !source.realPath().equals(target.realPath())) {
            throw target.failure(ErrorCode.INVALID_LOCATION, "is the target of the link to be moved");
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
            copyOver(source, target, replace);
        } else if (present != EntryKind.MISSING && areHardLinks(source, target)) {
            // Renaming one name of a file to another name of it does nothing, so only the source is removed.
            SpareName.remove(source.path, target.path, EntryKind.ownAttributesOf(source.path));
        } else {
            rename(source, target, replace);
        }
    }

    /**
     * Moves to a free name, which is the common case. The system checks the target itself; if it refuses, the checks of
     * this class find out why.
     *
     * @return false if the file was not moved
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
            throw target.failure(ErrorCode.NOT_A_FILE, "is a folder, and a file does not replace a folder");
        }
        BasicFileAttributes own = EntryKind.ownAttributesOf(target.path);
        if (own != null && own.isOther()) {
            throw target.failure(ErrorCode.NOT_SUPPORTED, "is neither a file nor a folder, and is not replaced");
        }
    }

    private static void rename(Entry source, Entry target, boolean replace) throws IOException, ProviderException {
        try {
            if (replace && isRegular(source) && isRegular(target)) {
                Renaming.replace(source.path, target.path);
            } else {
                Renaming.rename(source.path, target.path, replace);
            }
        } catch (AtomicMoveNotSupportedException e) {
            copyOver(source, target, replace);
        }
    }

    private static boolean isRegular(Entry entry) throws IOException {
        BasicFileAttributes attributes = EntryKind.ownAttributesOf(entry.path);
        return attributes != null && attributes.isRegularFile();
    }

    /** The link count distinguishes two hard links from two spellings of one name. */
    private static boolean areHardLinks(Entry source, Entry target) throws IOException {
        return FileSystemTraits.createsExclusively(source.fileSystem())
                && source.fileSystem().supportedFileAttributeViews().contains("unix")
                && !source.isLink()
                && !target.isLink()
                && Files.exists(target.path)
                && Files.isSameFile(source.path, target.path)
                && (int) Files.getAttribute(source.path, "unix:nlink", LinkOption.NOFOLLOW_LINKS) > 1;
    }

    /** Moves where a rename cannot: makes a private copy that gets the target's name at the end. */
    private static void copyOver(Entry source, Entry target, boolean replace) throws IOException, ProviderException {
        source.requireMovable();
        Path temporary = Names.hiddenBeside(target.path);
        BasicFileAttributes copied;
        try {
            KeptAttributes replaced = replace && isRegular(target) ? KeptAttributes.of(target.path) : null;
            OpenFolder folder = OpenFolder.named(source.path.getParent());
            copied = FileCopy.copy(folder, source.path.getFileName(), temporary, replaced);
            Interruption.check();
            Renaming.renameAnyhow(temporary, target.path, replace);
            Durability.forceFolder(target.path.getParent());
        } catch (IOException | RuntimeException | ProviderException e) {
            Removal.discard(temporary, e);
            throw e;
        }
        if (!SpareName.removeUnchanged(source.path, copied)) {
            throw new InUseException(
                    source.path.toString(), "was copied, but has changed since, so the source is kept");
        }
    }
}
