package com.corvallen.jstore.test;

import com.google.common.jimfs.Configuration;
import com.google.common.jimfs.Jimfs;
import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.FileSystem;
import java.nio.file.FileVisitResult;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.SimpleFileVisitor;
import java.nio.file.StandardCopyOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.FileTime;

/**
 * The mount {@code memory} is a file system in memory. Its first content is that of the folder
 * {@code jstore.test.memory} of this machine, and its last content is written back there.
 */
public final class MemoryProvider extends DelegatingProvider {
    private static final Path KEPT = Path.of(System.getProperty("jstore.test.memory"));

    private final FileSystem memory = Jimfs.newFileSystem("memory", Configuration.unix());
    private final Path root = memory.getPath("/root");

    public MemoryProvider() throws IOException {
        copy(KEPT, root);
        System.setProperty("storage.mount.memory", root.toUri().toString());
    }

    @Override
    public void dispose() {
        super.dispose();
        try {
            copy(root, KEPT);
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }

    /** Adds a tree to another one, with times. */
    private static void copy(Path from, Path to) throws IOException {
        Files.walkFileTree(from, new SimpleFileVisitor<Path>() {
            private Path target(Path path) {
                return to.resolve(from.relativize(path).toString());
            }

            @Override
            public FileVisitResult preVisitDirectory(Path folder, BasicFileAttributes attributes) throws IOException {
                Files.createDirectories(target(folder));
                return FileVisitResult.CONTINUE;
            }

            @Override
            public FileVisitResult visitFile(Path file, BasicFileAttributes attributes) throws IOException {
                Files.copy(file, target(file), StandardCopyOption.REPLACE_EXISTING);
                Files.setLastModifiedTime(target(file), attributes.lastModifiedTime());
                return FileVisitResult.CONTINUE;
            }

            @Override
            public FileVisitResult postVisitDirectory(Path folder, IOException failure) throws IOException {
                FileTime time = Files.getLastModifiedTime(folder);
                Files.setLastModifiedTime(target(folder), time);
                return FileVisitResult.CONTINUE;
            }
        });
    }
}
