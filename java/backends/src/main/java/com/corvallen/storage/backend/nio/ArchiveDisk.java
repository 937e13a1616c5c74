package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileStore;
import java.nio.file.FileSystem;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.PathMatcher;
import java.nio.file.WatchService;
import java.nio.file.attribute.UserPrincipalLookupService;
import java.nio.file.spi.FileSystemProvider;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;

/**
 * The disk that the platform's file system for zip archives sees: it finds one archive there, creates temporary files,
 * and finally puts a new archive in place of the old one. Behind it, the archive is a file that is only read, the
 * temporary files are in a {@link Spool}, and the new archive is the content given to {@link #beginResult}. So
 * temporary files have no names that others could find, and failures at the end are caught here, which that file system
 * only prints. Safe on any thread.
 */
final class ArchiveDisk extends FileSystem {
    private final ArchiveDiskProvider provider = new ArchiveDiskProvider(this);
    private final Path archive;
    private final Content original;
    private final Spool spool;
    private final Map<String, Content> files = new ConcurrentHashMap<>();

    /** Where the next created file is written, as the new archive; null before the end. */
    private volatile Content result;

    private volatile boolean complete;
    private volatile IOException failure;

    ArchiveDisk(Path archive, Content original, Spool spool) {
        super();
        this.archive = archive;
        this.original = original;
        this.spool = spool;
    }

    Path archive() {
        return archive;
    }

    /**
     * Returns the path of the archive on this disk. Its text is that of the real path, and its file system is this one.
     */
    Path path() {
        return getPath(archive.toString());
    }

    /** Makes the next created file the new archive, and starts to record the first failure. */
    void beginResult(Content newArchive) {
        result = newArchive;
    }

    /** Returns whether there is a new archive, which is so only if something has changed. Throws if a write failed. */
    boolean isReplaced() throws IOException {
        if (failure != null) {
            throw failure;
        }
        return complete;
    }

    Content contentOf(String name) throws NoSuchFileException {
        Content content = name.equals(archive.toString()) ? original : files.get(name);
        if (content == null) {
            throw new NoSuchFileException(name);
        }
        return new WatchedContent(content);
    }

    void create(String name) throws IOException {
        Content content = result == null ? new SpooledContent(spool) : result;
        if (files.putIfAbsent(name, content) != null) {
            throw new FileAlreadyExistsException(name);
        }
    }

    /** Ignores the removal of the old archive: it is only removed to be replaced. */
    void delete(String name) throws NoSuchFileException {
        if (name.equals(archive.toString())) {
            return;
        }
        Content content = files.remove(name);
        if (content == null) {
            throw new NoSuchFileException(name);
        }
        if (content instanceof SpooledContent) {
            ((SpooledContent) content).release();
        }
    }

    void rename(String from, String to) throws IOException {
        Content content = files.remove(from);
        if (content == null || content != result || !to.equals(archive.toString())) {
            throw new IOException("only a new archive can be renamed");
        }
        complete = true;
    }

    /** Records failures at the end, because the file system on top does not report them. */
    private final class WatchedContent implements Content {
        private final Content content;

        WatchedContent(Content content) {
            this.content = content;
        }

        @Override
        public int read(ByteBuffer target, long position) throws IOException {
            return watched(() -> content.read(target, position));
        }

        @Override
        public int write(ByteBuffer source, long position) throws IOException {
            return watched(() -> content.write(source, position));
        }

        @Override
        public long size() throws IOException {
            return watched(content::size);
        }

        @Override
        public void truncate(long size) throws IOException {
            content.truncate(size);
        }
    }

    /** An access to a content. */
    private interface Access<T> {
        T run() throws IOException;
    }

    private <T> T watched(Access<T> access) throws IOException {
        try {
            return access.run();
        } catch (IOException e) {
            if (result != null && failure == null) {
                failure = e;
            }
            throw e;
        }
    }

    @Override
    public FileSystemProvider provider() {
        return provider;
    }

    @Override
    public void close() throws IOException {
        spool.close();
    }

    @Override
    public boolean isOpen() {
        return true;
    }

    @Override
    public boolean isReadOnly() {
        return false;
    }

    @Override
    public String getSeparator() {
        return "/";
    }

    @Override
    public Iterable<Path> getRootDirectories() {
        return List.of();
    }

    @Override
    public Iterable<FileStore> getFileStores() {
        return List.of();
    }

    @Override
    public Set<String> supportedFileAttributeViews() {
        return Set.of("basic");
    }

    @Override
    public Path getPath(String first, String... more) {
        return new ArchiveDiskPath(this, first);
    }

    @Override
    public PathMatcher getPathMatcher(String pattern) {
        throw new UnsupportedOperationException();
    }

    @Override
    public UserPrincipalLookupService getUserPrincipalLookupService() {
        throw new UnsupportedOperationException();
    }

    @Override
    public WatchService newWatchService() {
        throw new UnsupportedOperationException();
    }
}
