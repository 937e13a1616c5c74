package com.corvallen.storage.backend.nio;

import java.net.URI;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.WatchEvent;
import java.nio.file.WatchKey;
import java.nio.file.WatchService;
import java.util.Objects;

/** A file on an {@link ArchiveDisk}. There are no folders, so every path is a single absolute name. Immutable. */
final class ArchiveDiskPath implements Path {
    private final ArchiveDisk disk;
    private final String name;

    ArchiveDiskPath(ArchiveDisk disk, String name) {
        this.disk = disk;
        this.name = name;
    }

    @Override
    public ArchiveDisk getFileSystem() {
        return disk;
    }

    @Override
    public boolean isAbsolute() {
        return true;
    }

    @Override
    public Path getRoot() {
        return null;
    }

    @Override
    public Path getFileName() {
        return this;
    }

    @Override
    public Path getParent() {
        return null;
    }

    @Override
    public int getNameCount() {
        return 1;
    }

    @Override
    public Path getName(int index) {
        return this;
    }

    @Override
    public Path subpath(int begin, int end) {
        return this;
    }

    @Override
    public boolean startsWith(Path other) {
        return equals(other);
    }

    @Override
    public boolean endsWith(Path other) {
        return equals(other);
    }

    @Override
    public Path normalize() {
        return this;
    }

    @Override
    public Path resolve(Path other) {
        return other;
    }

    @Override
    public Path relativize(Path other) {
        return other;
    }

    @Override
    public URI toUri() {
        return disk.archive().toUri();
    }

    @Override
    public Path toAbsolutePath() {
        return this;
    }

    @Override
    public Path toRealPath(LinkOption... options) {
        return this;
    }

    @Override
    public WatchKey register(WatchService watcher, WatchEvent.Kind<?>[] events, WatchEvent.Modifier... modifiers) {
        throw new UnsupportedOperationException("nothing here can be watched");
    }

    @Override
    public int compareTo(Path other) {
        return name.compareTo(other.toString());
    }

    @Override
    public boolean equals(Object other) {
        return other instanceof ArchiveDiskPath
                && disk == ((ArchiveDiskPath) other).disk
                && name.equals(((ArchiveDiskPath) other).name);
    }

    @Override
    public int hashCode() {
        return Objects.hash(System.identityHashCode(disk), name);
    }

    @Override
    public String toString() {
        return name;
    }
}
