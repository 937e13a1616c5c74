package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.AccessDeniedException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.SecureDirectoryStream;
import java.nio.file.attribute.BasicFileAttributeView;
import java.util.ArrayList;
import java.util.List;

/**
 * Removes a folder with everything in it, links included, and nothing that a link leads to.
 *
 * <p>Where the file system can, each folder is opened relative to the one above and without following links, so not
 * even someone who swaps a folder for a link meanwhile can lead the removal astray. What others remove at the same time
 * is fine. The first failure ends it, and what is left then stays.
 */
final class TreeDeleter {
    private TreeDeleter() {}

    /** Removes whatever is at the path: a folder with everything in it, or a file or link. */
    static void delete(Path path) throws IOException {
        if (EntryKind.of(path, LinkOption.NOFOLLOW_LINKS) != EntryKind.FOLDER) {
            Files.delete(path);
            return;
        }
        try (DirectoryStream<Path> parent = Files.newDirectoryStream(path.getParent())) {
            if (parent instanceof SecureDirectoryStream) {
                deleteFolder((SecureDirectoryStream<Path>) parent, path.getFileName());
                return;
            }
        } catch (AccessDeniedException e) {
            // The parent may be closed to reading though not to removing; then it is done by path, which says if not.
        }
        deleteFolder(path);
    }

    private static void deleteFolder(SecureDirectoryStream<Path> parent, Path name) throws IOException {
        try (SecureDirectoryStream<Path> folder = parent.newDirectoryStream(name, LinkOption.NOFOLLOW_LINKS)) {
            for (Path child : childrenOf(folder)) {
                deleteChild(folder, child.getFileName());
            }
        }
        parent.deleteDirectory(name);
    }

    private static void deleteChild(SecureDirectoryStream<Path> folder, Path name) throws IOException {
        try {
            if (isFolder(folder, name)) {
                deleteFolder(folder, name);
            } else {
                folder.deleteFile(name);
            }
        } catch (NoSuchFileException e) {
            // Someone else has removed it.
        }
    }

    private static boolean isFolder(SecureDirectoryStream<Path> folder, Path name) throws IOException {
        return folder.getFileAttributeView(name, BasicFileAttributeView.class, LinkOption.NOFOLLOW_LINKS)
                .readAttributes()
                .isDirectory();
    }

    private static void deleteFolder(Path path) throws IOException {
        for (Path child : childrenOf(path)) {
            deleteChild(child);
        }
        Files.deleteIfExists(path);
    }

    private static void deleteChild(Path child) throws IOException {
        if (EntryKind.of(child, LinkOption.NOFOLLOW_LINKS) == EntryKind.FOLDER) {
            deleteFolder(child);
        } else {
            Files.deleteIfExists(child);
        }
    }

    private static List<Path> childrenOf(Path folder) throws IOException {
        try (DirectoryStream<Path> stream = Files.newDirectoryStream(folder)) {
            return childrenOf(stream);
        }
    }

    /** All at once, since removing while reading makes some file systems leave entries out. */
    private static List<Path> childrenOf(DirectoryStream<Path> stream) {
        List<Path> children = new ArrayList<>();
        stream.forEach(children::add);
        return children;
    }
}
