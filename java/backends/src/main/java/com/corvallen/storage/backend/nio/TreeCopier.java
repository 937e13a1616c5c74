package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.BasicFileAttributeView;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.PosixFileAttributeView;

/** Copies a folder with everything in it, times and permissions included. Links are copied as links. */
final class TreeCopier {
    private TreeCopier() {}

    /**
     * Takes a free name for the copy: with an empty folder, or with the whole copy if what is copied is none. If that
     * fails, a folder or link has not been made; of a file, part may be left.
     */
    static void begin(Path from, Path to) throws IOException {
        requireCopyable(from, to);
        if (isFolder(from)) {
            Files.createDirectory(to);
        } else if (isWithinArchive(from, to)) {
            ArchiveCopy.copy(from, to);
        } else {
            copy(from, to);
        }
    }

    private static void copy(Path from, Path to) throws IOException {
        OpenFiles.Use use = OpenFiles.reading(from);
        try {
            Files.copy(from, to, StandardCopyOption.COPY_ATTRIBUTES, LinkOption.NOFOLLOW_LINKS);
        } finally {
            use.close();
        }
    }

    /** Copies everything in a folder to one that begin has made. The first failure ends it, and part of it is left. */
    static void fill(Path from, Path to) throws IOException {
        if (!isFolder(from)) {
            return;
        }
        try (DirectoryStream<Path> children = Files.newDirectoryStream(from)) {
            for (Path child : children) {
                Path copy = Names.child(to, Names.of(child));
                begin(child, copy);
                fill(child, copy);
            }
        }
        copyFolderAttributes(from, to);
    }

    private static boolean isWithinArchive(Path from, Path to) {
        return from.getFileSystem().equals(to.getFileSystem())
                && !FileSystemTraits.movesWrittenFiles(from.getFileSystem());
    }

    private static boolean isFolder(Path path) throws IOException {
        return EntryKind.of(path, LinkOption.NOFOLLOW_LINKS) == EntryKind.FOLDER;
    }

    /** Pipes would block for ever, and the platform refuses links with a message only. */
    private static void requireCopyable(Path from, Path to) throws IOException {
        if (from.getFileSystem().provider().equals(to.getFileSystem().provider())) {
            return;
        }
        BasicFileAttributes attributes =
                Files.readAttributes(from, BasicFileAttributes.class, LinkOption.NOFOLLOW_LINKS);
        if (attributes.isSymbolicLink() || attributes.isOther()) {
            throw new UnsupportedOperationException(from + " is nothing that another kind of file system can take");
        }
    }

    /** Last, since new children change the time, and permissions may forbid new children. */
    private static void copyFolderAttributes(Path from, Path to) throws IOException {
        PosixFileAttributeView source = posixViewOf(from);
        PosixFileAttributeView target = posixViewOf(to);
        if (source != null && target != null) {
            target.setPermissions(source.readAttributes().permissions());
        }
        BasicFileAttributes times = Files.readAttributes(from, BasicFileAttributes.class, LinkOption.NOFOLLOW_LINKS);
        Files.getFileAttributeView(to, BasicFileAttributeView.class, LinkOption.NOFOLLOW_LINKS)
                .setTimes(times.lastModifiedTime(), times.lastAccessTime(), times.creationTime());
    }

    private static PosixFileAttributeView posixViewOf(Path path) {
        return Files.getFileAttributeView(path, PosixFileAttributeView.class, LinkOption.NOFOLLOW_LINKS);
    }
}
