package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;

/** What is at a path. Whatever exists and is no folder counts as a file. */
enum EntryKind {
    MISSING,
    FILE,
    FOLDER;

    /** Tells what a path leads to. Throws if the file system cannot tell; what it cannot tell is not "missing". */
    static EntryKind of(Path path, LinkOption... options) throws IOException {
        return of(attributesOf(path, options));
    }

    /** Tells what has these attributes; null stands for what is missing. */
    static EntryKind of(BasicFileAttributes attributes) {
        if (attributes == null) {
            return MISSING;
        }
        return attributes.isDirectory() ? FOLDER : FILE;
    }

    /** Returns the attributes of what a path leads to, null if it is missing. */
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

    /** Tells whether anything has this name, be it a link that leads nowhere. */
    static boolean isTaken(Path path) throws IOException {
        return of(path, LinkOption.NOFOLLOW_LINKS) != MISSING;
    }

    /** The exception says it only in the words of the system's language, so the tree is asked. */
    private static boolean isBelowFile(Path path) {
        for (Path above = path.getParent(); above != null; above = above.getParent()) {
            if (Files.exists(above)) {
                return !Files.isDirectory(above);
            }
        }
        return false;
    }
}
