package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.ReadableByteChannel;
import java.nio.file.DirectoryIteratorException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NotDirectoryException;
import java.nio.file.Path;
import java.nio.file.SecureDirectoryStream;
import java.nio.file.attribute.BasicFileAttributeView;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.Collections;
import java.util.Iterator;
import java.util.Objects;

/**
 * An open folder. Where the file system can, operations act on exactly this folder, even if someone moves it away and
 * puts a link in its place. Used by one thread.
 */
final class OpenFolder implements AutoCloseable {
    private final Path path;

    /** Null if the folder is only named. */
    private final DirectoryStream<Path> stream;

    private final Iterator<Path> children;

    /** The same object as the stream; null if the file system has no secure streams. */
    private final SecureDirectoryStream<Path> secure;

    private OpenFolder(Path path, DirectoryStream<Path> stream) {
        this.path = path;
        this.stream = stream;
        this.children = stream == null ? Collections.emptyIterator() : stream.iterator();
        this.secure = stream instanceof SecureDirectoryStream ? (SecureDirectoryStream<Path>) stream : null;
    }

    /** Returns a folder without opening it, for one that this process may not be allowed to read. */
    static OpenFolder named(Path path) {
        return new OpenFolder(path, null);
    }

    /** Opens a folder; refuses a link. */
    static OpenFolder open(Path path) throws IOException {
        return open(path, Files.readAttributes(path, BasicFileAttributes.class, LinkOption.NOFOLLOW_LINKS));
    }

    /**
     * Opens a folder.
     *
     * @param known its attributes; throws NotDirectoryException if another folder, or a link, has taken its place
     */
    static OpenFolder open(Path path, BasicFileAttributes known) throws IOException {
        if (!known.isDirectory()) {
            throw new NotDirectoryException(path.toString());
        }
        OpenFolder folder = new OpenFolder(path, Files.newDirectoryStream(path));
        try {
            folder.requireSame(known);
            return folder;
        } catch (IOException | RuntimeException e) {
            folder.close();
            throw e;
        }
    }

    /** Opens a folder in this one; refuses a link. */
    OpenFolder enter(Path name) throws IOException {
        Path child = path.resolve(name);
        return secure == null
                ? open(child)
                : new OpenFolder(child, secure.newDirectoryStream(name, LinkOption.NOFOLLOW_LINKS));
    }

    private void requireSame(BasicFileAttributes known) throws IOException {
        if (secure == null) {
            return;
        }
        BasicFileAttributes found = secure.getFileAttributeView(BasicFileAttributeView.class).readAttributes();
        if (!Objects.equals(found.fileKey(), known.fileKey())) {
            throw new NotDirectoryException(path.toString());
        }
    }

    /** Tells whether its entries can be moved to another open folder. */
    boolean isSecure() {
        return secure != null;
    }

    /** Returns the name of the next child, null after the last. */
    Path next() throws IOException {
        try {
            return children.hasNext() ? children.next().getFileName() : null;
        } catch (DirectoryIteratorException e) {
            throw e.getCause();
        }
    }

    /** Returns the path of a child; it may be longer than the system accepts. */
    Path pathOf(Path name) {
        return path.resolve(name);
    }

    /** Reads the attributes of a child, without following a link. */
    BasicFileAttributes attributesOf(Path name) throws IOException {
        return secure == null
                ? Files.readAttributes(pathOf(name), BasicFileAttributes.class, LinkOption.NOFOLLOW_LINKS)
                : secure.getFileAttributeView(name, BasicFileAttributeView.class, LinkOption.NOFOLLOW_LINKS)
                        .readAttributes();
    }

    /** Opens a regular file for reading. */
    ReadableByteChannel read(Path name) throws IOException {
        return secure == null ? ByteCopy.open(pathOf(name)) : secure.newByteChannel(name, ByteCopy.READ_ITSELF);
    }

    void deleteFile(Path name) throws IOException {
        if (secure == null) {
            Files.delete(pathOf(name));
        } else {
            secure.deleteFile(name);
        }
    }

    /** Removes an empty folder. */
    void deleteFolder(Path name) throws IOException {
        if (secure == null) {
            Files.delete(pathOf(name));
        } else {
            secure.deleteDirectory(name);
        }
    }

    /** Moves a child to another folder on the same disk; both must be secure. */
    void move(Path name, OpenFolder target, Path newName) throws IOException {
        secure.move(name, target.secure, newName);
    }

    @Override
    public void close() throws IOException {
        if (stream != null) {
            stream.close();
        }
    }
}
