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
 * as the target can hold them. Nothing but regular files is opened. What is written is on the disk when it returns.
 */
final class EntryCopy {
    /** A file that someone writes to just now may be at rest a moment later. */
    private static final int ATTEMPTS = 3;

    private final OpenFolder folder;
    private final Path name;
    private final Path from;
    private final Path to;

    /** What the copy is to replace; null if nothing. */
    private final KeptAttributes replaced;

    private EntryCopy(OpenFolder folder, Path name, Path to, KeptAttributes replaced) {
        this.folder = folder;
        this.name = name;
        this.from = folder.pathOf(name);
        this.to = to;
        this.replaced = replaced;
    }

    /**
     * Copies to a name that is free. If that fails, part of a copy may be left.
     *
     * @return the attributes of what was copied, as it was before and after
     * @throws InUseException if it changes all the time
     * @throws UnsupportedOperationException for what cannot be copied there, or has a time that cannot be held there
     */
    static BasicFileAttributes copy(OpenFolder folder, Path name, Path to) throws IOException {
        return copy(folder, name, to, /* replaced= */ null);
    }

    /** The same for a copy that takes the place of a file, and from that one all but its content and times. */
    static BasicFileAttributes copy(OpenFolder folder, Path name, Path to, KeptAttributes replaced) throws IOException {
        try {
            return new EntryCopy(folder, name, to, replaced).run();
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
            ArchiveCopy.copy(from, to);
        } else {
            copyFile(attributes);
        }
    }

    /** To open a pipe blocks until its other end is open, and a device does as it likes. */
    private void requireCopyable(BasicFileAttributes attributes) {
        boolean isOneKind = from.getFileSystem().provider().equals(to.getFileSystem().provider());
        if (attributes.isOther() || attributes.isSymbolicLink() && !isOneKind) {
            throw new UnsupportedOperationException(from + " is nothing that another storage can take");
        }
    }

    private boolean isWithinArchive() {
        return from.getFileSystem().equals(to.getFileSystem())
                && !FileSystemTraits.movesWrittenFiles(from.getFileSystem());
    }

    private void copyFile(BasicFileAttributes attributes) throws IOException {
        OpenFiles.Use use = OpenFiles.reading(from);
        try {
            copyContent(attributes);
        } finally {
            use.close();
        }
    }

    private void copyContent(BasicFileAttributes attributes) throws IOException {
        try (ReadableByteChannel in = folder.read(name);
                WritableByteChannel out = ContentCopy.create(to)) {
            ContentCopy.copy(in, out);
            if (out instanceof FileChannel) {
                finish(attributes);
                ((FileChannel) out).force(/* metaData= */ true);
                return;
            }
        }
        finish(attributes);
    }

    /** Last, since permissions may forbid what comes before, and open the file to others. */
    private void finish(BasicFileAttributes attributes) throws IOException {
        KeptAttributes own = KeptAttributes.of(from);
        own.giveAttached(to);
        if (replaced != null) {
            replaced.giveAttached(to);
        }
        Times.copy(attributes, to);
        if (replaced == null) {
            own.giveAccess(to);
        } else {
            replaced.giveAccessAnew(to);
        }
    }
}
