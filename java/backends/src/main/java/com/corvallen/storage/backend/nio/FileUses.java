package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.channels.Channel;
import java.nio.file.FileSystem;
import java.nio.file.FileSystemException;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Objects;

/**
 * Which files of this process are open, and how, so that uses that exclude each other are refused. Safe on any thread.
 *
 * <p>A process loses its locks on a file as soon as it closes any descriptor of that file. So everything that opens a
 * file is registered here. A channel is a {@link Use}. What only opens and closes a file, as the platform does to reach
 * some attributes, runs in {@link #briefly} or {@link #creating}. That is refused while a channel holds the file
 * exclusively, and a new exclusive channel waits for the brief uses that have begun.
 */
final class FileUses {
    private static final Map<Key, List<Use>> USES = new HashMap<>();

    /** The number of brief uses under way, by the file's key, or by the name under which it is created. */
    private static final Map<Object, Integer> BRIEF = new HashMap<>();

    private FileUses() {}

    /** One file under any name: the key that the file system has for it, or its path if it has none. */
    private static final class Key {
        private final FileSystem system;
        private final Object file;

        Key(Found found) {
            this.system = found.fileSystem();
            Object known = found.attributes == null ? null : found.attributes.fileKey();
            this.file = known != null ? known : found.path;
        }

        @Override
        public boolean equals(Object other) {
            return other instanceof Key && system == ((Key) other).system && file.equals(((Key) other).file);
        }

        @Override
        public int hashCode() {
            return Objects.hash(System.identityHashCode(system), file);
        }
    }

    /** How a channel uses a file. */
    enum Mode {
        READ,
        WRITE,
        EXCLUSIVE
    }

    /** One channel's use of one file; ends when it is closed. */
    static final class Use implements AutoCloseable {
        private final Key key;
        private final Path path;
        private final Mode mode;

        /** Channels to be closed only after the lock ends. */
        private final List<Channel> parked = new ArrayList<>();

        private Use(Found found, Mode mode) {
            this.key = new Key(found);
            this.path = found.path;
            this.mode = mode;
        }

        @Override
        public void close() {
            synchronized (USES) {
                USES.computeIfPresent(key, (file, uses) -> {
                    uses.remove(this);
                    return uses.isEmpty() ? null : uses;
                });
            }
            parked.forEach(FileUses::closeUnread);
        }
    }

    /** Begins to use a file; returns null if another use excludes this one. */
    static Use begin(Found found, Mode mode) throws IOException {
        Use use = new Use(found, mode);
        Object name = mode == Mode.EXCLUSIVE ? nameOf(found) : null;
        synchronized (USES) {
            List<Use> others = USES.computeIfAbsent(use.key, key -> new ArrayList<>());
            if (others.stream().anyMatch(other -> areExclusive(use, other))) {
                return null;
            }
            others.add(use);
            if (name != null) {
                awaitEnd(use.key, name);
            }
            return use;
        }
    }

    /** Returns the name under which the file was created, if it has not been renamed since. */
    private static Object nameOf(Found found) throws IOException {
        return FileSystemTraits.isSharedByProcesses(found.fileSystem())
                ? found.path.toRealPath().getFileName()
                : found.path.getFileName();
    }

    /** Waits for the end of all brief uses of a file. They never wait themselves, so this wait is not interrupted. */
    private static void awaitEnd(Key key, Object name) {
        boolean interrupted = false;
        while (BRIEF.containsKey(key) || BRIEF.containsKey(name)) {
            try {
                USES.wait();
            } catch (InterruptedException e) {
                interrupted = true;
            }
        }
        if (interrupted) {
            Thread.currentThread().interrupt();
        }
    }

    /**
     * Runs an action that opens and closes a file.
     *
     * @return false if a channel holds the file exclusively; the action has not run then
     */
    static boolean briefly(Found found, Failures.Action action) throws IOException, ProviderException {
        Key key = new Key(found);
        synchronized (USES) {
            if (holderOf(key) != null) {
                return false;
            }
            BRIEF.merge(key, 1, Integer::sum);
        }
        runBrief(key, action);
        return true;
    }

    /** Runs an action that opens and closes what has a name, even a link. */
    static boolean briefly(Path path, Failures.Action action) throws IOException {
        BasicFileAttributes attributes = EntryKind.ownAttributesOf(path);
        try {
            return briefly(new Found(/* location= */ null, path, attributes), action);
        } catch (ProviderException e) {
            throw new IOException(e);
        }
    }

    /** Runs an action that creates a file and closes it. */
    static void creating(Path path, Failures.Action action) throws IOException, ProviderException {
        Object name = path.getFileName();
        synchronized (USES) {
            BRIEF.merge(name, 1, Integer::sum);
        }
        runBrief(name, action);
    }

    /**
     * Begins to read a file, as for a copy. Until the use ends, no channel can be opened exclusively.
     *
     * @throws FileSystemException if one is open
     */
    static Use reading(Path path) throws IOException {
        BasicFileAttributes attributes = EntryKind.ownAttributesOf(path);
        Use use = begin(new Found(/* location= */ null, path, attributes), Mode.READ);
        if (use == null) {
            throw new FileSystemException(path.toString(), null, "is open exclusively");
        }
        return use;
    }

    private static void runBrief(Object what, Failures.Action action) throws IOException, ProviderException {
        try {
            action.run();
        } finally {
            synchronized (USES) {
                BRIEF.computeIfPresent(what, (key, count) -> count == 1 ? null : count - 1);
                USES.notifyAll();
            }
        }
    }

    /**
     * Closes a file that was opened by mistake; if a channel holds it exclusively, later, when that channel is closed.
     */
    static void discard(Found opened, Channel channel) throws IOException, ProviderException {
        synchronized (USES) {
            Use holder = holderOf(new Key(opened));
            if (holder != null) {
                holder.parked.add(channel);
                return;
            }
        }
        if (!briefly(opened, channel::close)) {
            discard(opened, channel);
        }
    }

    private static Use holderOf(Key key) {
        return USES.getOrDefault(key, List.of()).stream()
                .filter(use -> use.mode == Mode.EXCLUSIVE)
                .findAny()
                .orElse(null);
    }

    /** Nothing was written through it, so a failure loses nothing. */
    private static void closeUnread(Channel channel) {
        try {
            channel.close();
        } catch (IOException e) {
            Log.warning("Cannot close a file", e);
        }
    }

    private static boolean areExclusive(Use one, Use other) {
        if (one.mode == Mode.EXCLUSIVE || other.mode == Mode.EXCLUSIVE) {
            return true;
        }
        boolean bothWrite = one.mode == Mode.WRITE && other.mode == Mode.WRITE;
        return bothWrite && !FileSystemTraits.sharesWriting(one.path.getFileSystem());
    }

    /** Tells whether a file, or a file below a folder, is open in a way that rules out removing or moving it. */
    static boolean pinned(Path path) {
        FileSystem system = path.getFileSystem();
        String scheme = system.provider().getScheme();
        if (FileSystemTraits.movesOpenFiles(scheme)) {
            return false;
        }
        boolean readersMatter = !FileSystemTraits.movesFilesOpenForReading(scheme);
        synchronized (USES) {
            return USES.values().stream()
                    .flatMap(List::stream)
                    .filter(use -> use.key.system == system && use.path.startsWith(path))
                    .anyMatch(use -> readersMatter || use.mode != Mode.READ);
        }
    }

    /** Tells whether a channel can write to a file. */
    static boolean isWritten(Found found) {
        synchronized (USES) {
            return USES.getOrDefault(new Key(found), List.of()).stream().anyMatch(use -> use.mode != Mode.READ);
        }
    }
}
