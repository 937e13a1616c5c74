package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.ClosedByInterruptException;
import java.nio.channels.FileChannel;
import java.nio.channels.ReadableByteChannel;
import java.nio.channels.WritableByteChannel;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.BasicFileAttributes;

/**
 * Copies one file or link out of an open folder, with its times, and with permissions, owner and user attributes as far
 * as the target can hold them. Opens only regular files. The content is on the disk when this returns.
 */
final class FileCopy {
    /** A file that is just being written may be at rest a moment later. */
    private static final int ATTEMPTS = 3;

    private final OpenFolder folder;
    private final Path name;
    private final Path from;
    private final Path to;

    /** The attributes of the file that the copy will replace; null if none. */
    private final KeptAttributes replaced;

    private FileCopy(OpenFolder folder, Path name, Path to, KeptAttributes replaced) {
        this.folder = folder;
        this.name = name;
        this.from = folder.pathOf(name);
        this.to = to;
        this.replaced = replaced;
    }

    /**
     * Copies to a free name. If that fails, a partial copy may be left.
     *
     * @return the attributes of the source, which were the same before and after
     * @throws InUseException if the source keeps changing
     * @throws UnsupportedOperationException if the target cannot hold it, or its time
     */
    static BasicFileAttributes copy(OpenFolder folder, Path name, Path to) throws IOException {
        return copy(folder, name, to, /* replaced= */ null);
    }

    /** Copies what is to replace another file: content and times come from the source, the rest from that file. */
    static BasicFileAttributes copy(OpenFolder folder, Path name, Path to, KeptAttributes replaced) throws IOException {
        try {
            return new FileCopy(folder, name, to, replaced).run();
        } catch (ClosedByInterruptException e) {
            throw Interruption.failure();
        }
    }

    private BasicFileAttributes run() throws IOException {
        for (int i = 0; i < ATTEMPTS; i++) {
            BasicFileAttributes before = folder.attributesOf(name);
            copyOnce(before);
            if (FileIdentity.isUnchanged(before, folder.attributesOf(name))) {
                return before;
            }
            Files.delete(to);
        }
        throw new InUseException(from.toString(), "is written to while it is moved");
    }

    private void copyOnce(BasicFileAttributes attributes) throws IOException {
        requireCopyable(attributes);
        if (attributes.isSymbolicLink()) {
            Files.copy(from, to, StandardCopyOption.COPY_ATTRIBUTES, LinkOption.NOFOLLOW_LINKS);
        } else if (isWithinArchive()) {
            ZipEntryCopy.copy(from, to);
        } else {
            copyFile(attributes);
        }
    }

    /** Opening a pipe blocks until its other end is open, and opening a device has side effects. */
    private void requireCopyable(BasicFileAttributes attributes) {
        boolean isOneKind = from.getFileSystem().provider().equals(to.getFileSystem().provider());
        if (attributes.isOther() || attributes.isSymbolicLink() && !isOneKind) {
            throw new UnsupportedOperationException(from + " cannot be copied to another storage");
        }
    }

    private boolean isWithinArchive() {
        return from.getFileSystem().equals(to.getFileSystem())
                && !FileSystemTraits.movesWrittenFiles(from.getFileSystem());
    }

    private void copyFile(BasicFileAttributes attributes) throws IOException {
        FileUses.Use use = FileUses.reading(from);
        try {
            copyContent(attributes);
        } finally {
            use.close();
        }
    }

    private void copyContent(BasicFileAttributes attributes) throws IOException {
        try (ReadableByteChannel in = folder.read(name);
                WritableByteChannel out = ByteCopy.create(to)) {
            ByteCopy.copy(in, out);
            if (out instanceof FileChannel) {
                finish(attributes);
                ((FileChannel) out).force(/* metaData= */ true);
                return;
            }
        }
        finish(attributes);
    }

    /** Done last: the permissions may forbid the steps before, and open the file to others. */
    private void finish(BasicFileAttributes attributes) throws IOException {
        KeptAttributes own = KeptAttributes.of(from);
        own.giveUserAttributes(to);
        if (replaced != null) {
            replaced.giveUserAttributes(to);
        }
        Times.copy(attributes, to);
        if (replaced == null) {
            own.giveAccess(to);
        } else {
            replaced.giveAccessAnew(to);
        }
    }
}
