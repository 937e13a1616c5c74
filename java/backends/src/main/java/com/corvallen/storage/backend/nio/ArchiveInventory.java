package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.FileVisitResult;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.SimpleFileVisitor;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.HashMap;
import java.util.HashSet;
import java.util.Map;
import java.util.Set;

/** The names in an archive before it is written, to be looked up in what was written. */
final class ArchiveInventory {
    /** By name, without a leading slash. */
    private final Map<String, Long> sizes = new HashMap<>();

    /** With a trailing slash. Other folders need no entry of their own, as the names in them imply them. */
    private final Set<String> emptyFolders = new HashSet<>();

    private ArchiveInventory() {}

    static ArchiveInventory of(FileSystem archive) throws IOException {
        ArchiveInventory contents = new ArchiveInventory();
        Path root = archive.getRootDirectories().iterator().next();
        Files.walkFileTree(root, contents.new Visitor());
        return contents;
    }

    /** Returns the size of a file, or null if there is no file with that name. */
    Long sizeOf(String file) {
        return sizes.get(file);
    }

    Set<String> files() {
        return sizes.keySet();
    }

    Set<String> emptyFolders() {
        return emptyFolders;
    }

    private final class Visitor extends SimpleFileVisitor<Path> {
        @Override
        public FileVisitResult preVisitDirectory(Path folder, BasicFileAttributes attributes) {
            Path parent = folder.getParent();
            if (parent != null) {
                emptyFolders.remove(nameOf(parent) + "/");
                emptyFolders.add(nameOf(folder) + "/");
            }
            return FileVisitResult.CONTINUE;
        }

        @Override
        public FileVisitResult visitFile(Path file, BasicFileAttributes attributes) {
            emptyFolders.remove(nameOf(file.getParent()) + "/");
            sizes.put(nameOf(file), attributes.size());
            return FileVisitResult.CONTINUE;
        }

        private String nameOf(Path path) {
            return path.toString().replaceFirst("^/", "").replaceFirst("/$", "");
        }
    }
}
