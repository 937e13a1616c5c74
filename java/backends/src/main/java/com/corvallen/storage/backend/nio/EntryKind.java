package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;

/** What is at a path. Everything that exists and is not a folder counts as a file. */
enum EntryKind {
    MISSING,
    FILE,
    FOLDER;

    /** Tells what a path leads to. Throws if the file system cannot say; that is not the same as missing. */
    static EntryKind of(Path path, LinkOption... options) throws IOException {
        return of(attributesOf(path, options));
    }

    /** Tells what has these attributes; null stands for a missing entry. */
    static EntryKind of(BasicFileAttributes attributes) {
        if (attributes == null) {
            return MISSING;
        }
        return attributes.isDirectory() ? FOLDER : FILE;
    }

    /** Returns the attributes of what a path leads to; null if that is missing. */
    static BasicFileAttributes attributesOf(Path path, LinkOption... options) throws IOException {
        try {
            return Files.readAttributes(path, BasicFileAttributes.class, options);
        } catch (NoSuchFileException e) {
            return null;
        } catch (FileSystemException e) {
            if (isBelowFile(path)) {
                return null;
            }
            throw e;
        }
    }

    /** Returns the attributes of what has this path, a link's own; null if nothing has it. */
    static BasicFileAttributes ownAttributesOf(Path path) throws IOException {
        return attributesOf(path, LinkOption.NOFOLLOW_LINKS);
    }

    /** Tells whether anything has this name, even a link that leads nowhere. */
    static boolean isTaken(Path path) throws IOException {
        return of(path, LinkOption.NOFOLLOW_LINKS) != MISSING;
    }

    /** Walks up the tree, because the exception says this only in the system's language. */
    private static boolean isBelowFile(Path path) {
        for (Path above = path.getParent(); above != null; above = above.getParent()) {
            if (Files.exists(above)) {
                return !Files.isDirectory(above);
            }
        }
        return false;
    }
}
