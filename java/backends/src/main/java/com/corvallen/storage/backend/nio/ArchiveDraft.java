package com.corvallen.storage.backend.nio;

import java.io.Closeable;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.channels.FileLock;
import java.nio.channels.OverlappingFileLockException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.nio.file.StandardOpenOption;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.Random;
import java.util.Set;

/**
 * The file that will replace an archive. It lies beside it, as {@code .storage-archive-} and the archive's name. It
 * exists from the first change on and is locked while its process lives, so it also shows that someone is writing the
 * archive. An unlocked one was left by a process that was killed; the next writer removes it.
 *
 * <p>The system drops a process's locks on a file as soon as that process closes the file anywhere, for instance after
 * copying the folder. So there are two locks. The one on the first byte shows that there is an owner. Taking over needs
 * the second byte as well. The owner locks the second byte only at the end; if that works, the file is still its own.
 */
final class ArchiveDraft implements Closeable {
    static final String PREFIX = ".storage-archive-";
    private static final int ATTEMPTS = 100;
    private static final int MAX_MARK = 1 << 12;

    private final Path path;
    private final FileChannel channel;
    private final Object key;
    private boolean published;

    private ArchiveDraft(Path path, FileChannel channel, Object key) {
        this.path = path;
        this.channel = channel;
        this.key = key;
    }

    /**
     * Begins a new archive.
     *
     * @throws InUseException if someone else has begun one
     */
    static ArchiveDraft begin(Path archive) throws IOException {
        Path path = Names.hiddenFor(archive, PREFIX);
        for (int attempt = 0; attempt < ATTEMPTS; attempt++) {
            ArchiveDraft draft = create(path);
            if (draft != null) {
                return draft;
            }
            removeIfLeft(path, archive);
        }
        throw inUse(archive, "");
    }

    Path path() {
        return path;
    }

    FileChannel channel() {
        return channel;
    }

    /** Throws InUseException unless the file with this name is still this one. */
    void requireOwn(Path archive) throws IOException {
        if (!key.equals(keyOf(path))) {
            throw takenOver(archive);
        }
    }

    /** Does the same, and makes sure that it stays so until this is closed. Called once. */
    void keepOwn(Path archive) throws IOException {
        if (lock(channel, 1, 1) == Lock.REFUSED) {
            throw takenOver(archive);
        }
        requireOwn(archive);
    }

    private static InUseException takenOver(Path archive) {
        return new InUseException(archive.toString(), "another program has taken over writing this archive");
    }

    /** Puts the draft in the archive's place. */
    void replace(Path archive) throws IOException {
        Files.move(path, archive, StandardCopyOption.ATOMIC_MOVE, StandardCopyOption.REPLACE_EXISTING);
        published = true;
    }

    /** Removes the file, unless it has become the archive. */
    @Override
    public void close() throws IOException {
        try (channel) {
            if (!published && key.equals(keyOf(path))) {
                Files.deleteIfExists(path);
            }
        }
    }

    /** Returns null if the file exists already, or was taken away before it could be locked. */
    private static ArchiveDraft create(Path path) throws IOException {
        FileChannel channel;
        try {
            channel = Privacy.createFile(path);
        } catch (FileAlreadyExistsException e) {
            return null;
        }
        Object key = null;
        try {
            key = lock(channel, 0, 1) == Lock.REFUSED ? null : keyOfMarked(path, channel);
            return key == null ? null : new ArchiveDraft(path, channel, key);
        } finally {
            if (key == null) {
                channel.close();
            }
        }
    }

    /**
     * Returns the key of a channel's file. Java reads keys only by path, so the file is given a random size first; if
     * what is at the path has another size, it is another file, and null is returned.
     */
    private static Object keyOfMarked(Path path, FileChannel channel) throws IOException {
        int mark = 1 + new Random().nextInt(MAX_MARK);
        try {
            channel.write(ByteBuffer.allocate(1), mark - 1L);
        } catch (IOException e) {
            Files.deleteIfExists(path);
            throw e;
        }
        BasicFileAttributes attributes = EntryKind.ownAttributesOf(path);
        return attributes != null && attributes.size() == mark ? attributes.fileKey() : null;
    }

    private static void removeIfLeft(Path path, Path archive) throws IOException {
        Object before = keyOf(path);
        try (FileChannel channel = FileChannel.open(
                path, Set.of(StandardOpenOption.READ, StandardOpenOption.WRITE, LinkOption.NOFOLLOW_LINKS))) {
            Lock lock = lock(channel, 0, 2);
            if (lock != Lock.HELD) {
                throw inUse(archive, lock == Lock.REFUSED ? "" : ", or has left " + path.getFileName());
            }
            if (before != null && before.equals(keyOf(path))) {
                Files.deleteIfExists(path);
            }
        } catch (NoSuchFileException e) {
            // Its owner has just removed it.
        }
    }

    private static InUseException inUse(Path archive, String or) {
        return new InUseException(archive.toString(), "another program is writing this archive" + or);
    }

    private enum Lock {
        HELD,
        REFUSED,
        /** The disk has no locks, so there may be an owner or not. */
        UNKNOWN
    }

    private static Lock lock(FileChannel channel, long from, long size) {
        try {
            FileLock lock = channel.tryLock(from, size, /* shared= */ false);
            return lock == null ? Lock.REFUSED : Lock.HELD;
        } catch (OverlappingFileLockException e) {
            return Lock.REFUSED;
        } catch (IOException e) {
            return Lock.UNKNOWN;
        }
    }

    private static Object keyOf(Path path) throws IOException {
        BasicFileAttributes attributes = EntryKind.ownAttributesOf(path);
        return attributes == null ? null : attributes.fileKey();
    }
}
