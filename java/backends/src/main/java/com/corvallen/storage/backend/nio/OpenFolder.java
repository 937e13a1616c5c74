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
 * A folder that is open. What is done in it is done in just this folder, where the file system can: not even someone
 * who moves it away and puts a link in its place can lead it astray. Used by one thread.
 */
final class OpenFolder implements AutoCloseable {
    private final Path path;

    /** Null if it is not open. */
    private final DirectoryStream<Path> stream;

    private final Iterator<Path> children;

    /** The same as the stream, null where the file system has no such thing. */
    private final SecureDirectoryStream<Path> secure;

    private OpenFolder(Path path, DirectoryStream<Path> stream) {
        this.path = path;
        this.stream = stream;
        this.children = stream == null ? Collections.emptyIterator() : stream.iterator();
        this.secure = stream instanceof SecureDirectoryStream ? (SecureDirectoryStream<Path>) stream : null;
    }

    /** Returns a folder that is named only and not open, since it may be closed to reading. */
    static OpenFolder named(Path path) {
        return new OpenFolder(path, null);
    }

    /** Opens a folder and no link. */
    static OpenFolder open(Path path) throws IOException {
        return open(path, Files.readAttributes(path, BasicFileAttributes.class, LinkOption.NOFOLLOW_LINKS));
    }

    /**
     * Opens a folder.
     *
     * @param known its attributes; if there is another folder or a link by now, NotDirectoryException
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

    /** Opens a folder in this one, no link. */
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

    /** Tells whether entries can be given to another open folder. */
    boolean isSecure() {
        return secure != null;
    }

    /** Returns the name of a child that was not returned before, null if there is no other. */
    Path next() throws IOException {
        try {
            return children.hasNext() ? children.next().getFileName() : null;
        } catch (DirectoryIteratorException e) {
            throw e.getCause();
        }
    }

    /** Returns the path of a child, which may be longer than the system can use. */
    Path pathOf(Path name) {
        return path.resolve(name);
    }

    /** Reads the attributes of a child, a link's own. */
    BasicFileAttributes attributesOf(Path name) throws IOException {
        return secure == null
                ? Files.readAttributes(pathOf(name), BasicFileAttributes.class, LinkOption.NOFOLLOW_LINKS)
                : secure.getFileAttributeView(name, BasicFileAttributeView.class, LinkOption.NOFOLLOW_LINKS)
                        .readAttributes();
    }

    /** Opens a regular file for reading. */
    ReadableByteChannel read(Path name) throws IOException {
        return secure == null ? ContentCopy.open(pathOf(name)) : secure.newByteChannel(name, ContentCopy.READ_ITSELF);
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

    /** Gives a child to another folder of the same disk; both are secure. */
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
