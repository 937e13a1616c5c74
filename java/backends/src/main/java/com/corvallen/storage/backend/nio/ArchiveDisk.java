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
 * The disk that the platform's file system for zip archives sees. It finds one archive there, makes
 * its temporary files, and puts a new archive in place of the old one at its end. In truth the archive is a file that
 * is only read, the temporary files lie in a {@link Spool}, and the new archive is the file that {@link #beginResult}
 * says. So no temporary file has a name for others to find, and each failure at the end is seen here, which that file
 * system prints and forgets. Safe on any thread.
 */
final class ArchiveDisk extends FileSystem {
    private final ArchiveDiskProvider provider = new ArchiveDiskProvider(this);
    private final Path archive;
    private final Content original;
    private final Spool spool;
    private final Map<String, Content> files = new ConcurrentHashMap<>();

    /** Where the file that is made next becomes the new archive; null before the end. */
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

    /** Returns the place of the archive. Its text is that of the real one, which is asked for its disk by it. */
    Path path() {
        return getPath(archive.toString());
    }

    /** Makes what is created from now on the new archive, and remembers the first failure from now on. */
    void beginResult(Content newArchive) {
        result = newArchive;
    }

    /** Returns whether there is a new archive: only if something had changed. Throws if it cannot be sound. */
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
        Content content = result == null ? new SpoolFile(spool) : result;
        if (files.putIfAbsent(name, content) != null) {
            throw new FileAlreadyExistsException(name);
        }
    }

    /** The old archive is removed only to give way to the new one. */
    void delete(String name) throws NoSuchFileException {
        if (name.equals(archive.toString())) {
            return;
        }
        Content content = files.remove(name);
        if (content == null) {
            throw new NoSuchFileException(name);
        }
        if (content instanceof SpoolFile) {
            ((SpoolFile) content).release();
        }
    }

    void rename(String from, String to) throws IOException {
        Content content = files.remove(from);
        if (content == null || content != result || !to.equals(archive.toString())) {
            throw new IOException("only a new archive gets another name");
        }
        complete = true;
    }

    /** Remembers what goes wrong at the end; nobody above does. */
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
