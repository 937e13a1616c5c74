package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.channels.SeekableByteChannel;
import java.nio.file.Files;
import java.nio.file.OpenOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.Objects;
import java.util.Set;

/**
 * Opens files. What is at a location is examined before it is opened: only a file is opened, and never one that a
 * channel of this process holds exclusively. Since another file may take the name in between, it is examined again
 * after that.
 */
final class ChannelOpening {
    /** How often to try again if the file is replaced during opening. */
    private static final int MAX_ATTEMPTS = 1000;

    private static final Set<OpenOption> READ = Set.of(StandardOpenOption.READ);
    private static final Set<OpenOption> READ_WRITE = Set.of(StandardOpenOption.READ, StandardOpenOption.WRITE);

    private final StorageURI location;
    private final Mount mount;
    private final ChannelSet set;
    private final ContentCache cache;

    ChannelOpening(StorageURI location, Mount mount, ChannelSet set, ContentCache cache) {
        this.location = location;
        this.mount = mount;
        this.set = set;
        this.cache = cache;
    }

    ProviderChannel forReading() throws IOException, ProviderException {
        return untilSame(this::tryReading);
    }

    ProviderChannel forWriting(boolean create, boolean truncate, boolean exclusive)
            throws IOException, ProviderException {
        return untilSame(() -> tryWriting(create, truncate, exclusive));
    }

    /** What was opened is not what was examined. */
    private static final class ReplacedException extends IOException {
        private static final long serialVersionUID = 1;

        ReplacedException(Path path) {
            super(path.toString());
        }
    }

    private ProviderChannel untilSame(Failures.Query<ProviderChannel> attempt) throws IOException, ProviderException {
        for (int i = 0; i < MAX_ATTEMPTS; i++) {
            try {
                return attempt.run();
            } catch (ReplacedException e) {
                continue;
            }
        }
        throw failure(ErrorCode.IN_USE, "keeps being replaced");
    }

    private ProviderChannel tryReading() throws IOException, ProviderException {
        Found found = find(/* create= */ false);
        FileUses.Use use = begin(found, FileUses.Mode.READ);
        try {
            SeekableByteChannel channel = cache.open(found, () -> open(found, READ));
            return channel(channel, use, /* writable= */ false);
        } catch (IOException | RuntimeException | ProviderException e) {
            use.close();
            throw e;
        }
    }

    private ProviderChannel tryWriting(boolean create, boolean truncate, boolean exclusive)
            throws IOException, ProviderException {
        Found found = find(create);
        FileUses.Use use = begin(found, exclusive ? FileUses.Mode.EXCLUSIVE : FileUses.Mode.WRITE);
        try {
            cache.drop(found.path);
            mount.beginWriting();
            return channel(openForWriting(found, truncate, exclusive), use, /* writable= */ true);
        } catch (IOException | RuntimeException | ProviderException e) {
            use.close();
            throw e;
        }
    }

    private Found find(boolean create) throws IOException, ProviderException {
        return findOrCreate(create).requireFile().requireOpenable();
    }

    private Found findOrCreate(boolean create) throws IOException, ProviderException {
        Path path = mount.follow(location);
        BasicFileAttributes attributes = EntryKind.attributesOf(path);
        if (attributes != null) {
            return new Found(location, path, attributes);
        }
        new Entry(location, path, mount).requireParentFolder();
        if (create) {
            mount.beginWriting();
            Creation.createIfMissing(path);
        }
        return Found.at(location, mount);
    }

    private FileUses.Use begin(Found found, FileUses.Mode mode) throws IOException, ProviderException {
        FileUses.Use use = FileUses.begin(found, mode);
        if (use == null) {
            throw failure(ErrorCode.IN_USE, "is open already");
        }
        return use;
    }

    /** Empties the file last, when nothing can fail any more. */
    private SeekableByteChannel openForWriting(Found found, boolean truncate, boolean exclusive)
            throws IOException, ProviderException {
        SeekableByteChannel channel = open(found, READ_WRITE);
        try {
            if (!ProcessLock.obtain(channel, found.fileSystem(), exclusive)) {
                throw failure(ErrorCode.IN_USE, "is locked by another process");
            }
            if (truncate) {
                channel.truncate(0);
            }
            return channel;
        } catch (IOException | RuntimeException | ProviderException e) {
            channel.close();
            throw e;
        }
    }

    private static SeekableByteChannel open(Found found, Set<OpenOption> options)
            throws IOException, ProviderException {
        SeekableByteChannel channel = open(found.path, options);
        if (!FileSystemTraits.isSharedByProcesses(found.fileSystem())) {
            return channel;
        }
        BasicFileAttributes now = null;
        try {
            now = EntryKind.attributesOf(found.path);
        } finally {
            if (!isSame(now, found)) {
                FileUses.discard(new Found(found.location, found.path, now), channel);
            }
        }
        if (!isSame(now, found)) {
            throw new ReplacedException(found.path);
        }
        return channel;
    }

    private static boolean isSame(BasicFileAttributes now, Found found) {
        return now != null && Objects.equals(now.fileKey(), found.attributes.fileKey());
    }

    /** Prefers a file channel: a zip archive's plain channel for writing starts with an empty file. */
    private static SeekableByteChannel open(Path path, Set<OpenOption> options) throws IOException {
        try {
            return FileChannel.open(path, options);
        } catch (UnsupportedOperationException e) {
            return Files.newByteChannel(path, options);
        }
    }

    private ProviderChannel channel(SeekableByteChannel channel, FileUses.Use use, boolean writable)
            throws ProviderException {
        OpenFile file = new OpenFile(channel, use, set);
        if (!set.add(file)) {
            throw failure(ErrorCode.UNAVAILABLE, "belongs to a provider that is disposed of");
        }
        NioChannel result = new NioChannel(location, file, writable);
        ChannelSet.releaseWith(result, file);
        return result;
    }

    private ProviderException failure(ErrorCode code, String what) {
        return Failures.of(code, location, what);
    }
}
