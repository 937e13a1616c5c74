package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.net.URI;
import java.nio.channels.FileChannel;
import java.nio.channels.SeekableByteChannel;
import java.nio.file.AccessDeniedException;
import java.nio.file.AccessMode;
import java.nio.file.CopyOption;
import java.nio.file.DirectoryStream;
import java.nio.file.FileStore;
import java.nio.file.FileSystem;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.OpenOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.FileAttribute;
import java.nio.file.attribute.FileAttributeView;
import java.nio.file.spi.FileSystemProvider;
import java.util.Map;
import java.util.Set;

/** Implements what the file system for zip archives calls on an {@link ArchiveDisk}, and nothing else. */
final class ArchiveDiskProvider extends FileSystemProvider {
    private final ArchiveDisk disk;

    ArchiveDiskProvider(ArchiveDisk disk) {
        super();
        this.disk = disk;
    }

    @Override
    public SeekableByteChannel newByteChannel(
            Path path, Set<? extends OpenOption> options, FileAttribute<?>... attributes) throws IOException {
        return newFileChannel(path, options, attributes);
    }

    @Override
    public FileChannel newFileChannel(
            Path path, Set<? extends OpenOption> options, FileAttribute<?>... attributes) throws IOException {
        if (options.contains(StandardOpenOption.CREATE_NEW)) {
            disk.create(path.toString());
        }
        Content content = disk.contentOf(path.toString());
        if (options.contains(StandardOpenOption.TRUNCATE_EXISTING)) {
            content.truncate(0);
        }
        return new ContentChannel(content);
    }

    @Override
    public void delete(Path path) throws IOException {
        disk.delete(path.toString());
    }

    @Override
    public void move(Path source, Path target, CopyOption... options) throws IOException {
        disk.rename(source.toString(), target.toString());
    }

    /** Answers from the real file whether the archive can be written. */
    @Override
    public void checkAccess(Path path, AccessMode... modes) throws IOException {
        disk.contentOf(path.toString());
        for (AccessMode mode : modes) {
            if (mode == AccessMode.WRITE && !Files.isWritable(disk.archive())) {
                throw new AccessDeniedException(path.toString());
            }
        }
    }

    @Override
    public <A extends BasicFileAttributes> A readAttributes(Path path, Class<A> type, LinkOption... options)
            throws IOException {
        if (type != BasicFileAttributes.class) {
            throw new UnsupportedOperationException();
        }
        return type.cast(new ArchiveDiskAttributes(disk.contentOf(path.toString()).size()));
    }

    @Override
    public Map<String, Object> readAttributes(Path path, String attributes, LinkOption... options) {
        throw new UnsupportedOperationException();
    }

    /** Returns no view: permissions are given to the new archive separately. */
    @Override
    public <V extends FileAttributeView> V getFileAttributeView(Path path, Class<V> type, LinkOption... options) {
        return null;
    }

    @Override
    public void setAttribute(Path path, String attribute, Object value, LinkOption... options) {
        throw new UnsupportedOperationException();
    }

    @Override
    public boolean isSameFile(Path one, Path other) {
        return one.equals(other);
    }

    @Override
    public boolean isHidden(Path path) {
        return false;
    }

    @Override
    public FileStore getFileStore(Path path) throws IOException {
        return Files.getFileStore(disk.archive());
    }

    @Override
    public String getScheme() {
        return "storage-archive-disk";
    }

    @Override
    public FileSystem newFileSystem(URI uri, Map<String, ?> settings) {
        throw new UnsupportedOperationException();
    }

    @Override
    public FileSystem getFileSystem(URI uri) {
        return disk;
    }

    @Override
    public Path getPath(URI uri) {
        throw new UnsupportedOperationException();
    }

    @Override
    public DirectoryStream<Path> newDirectoryStream(Path folder, DirectoryStream.Filter<? super Path> filter) {
        throw new UnsupportedOperationException();
    }

    @Override
    public void createDirectory(Path folder, FileAttribute<?>... attributes) {
        throw new UnsupportedOperationException();
    }

    @Override
    public void copy(Path source, Path target, CopyOption... options) {
        throw new UnsupportedOperationException();
    }
}
