package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.channels.Channel;
import java.nio.file.FileSystem;
import java.nio.file.FileSystemException;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Objects;

/**
 * The files that channels are open on, of all providers of this process, and who may join. Safe on any thread.
 *
 * <p>A process loses its locks on a file as soon as it closes any descriptor of it. So nothing opens a file without
 * being known here: a channel is a {@link Use}, and what only opens and closes a file, as the platform does to reach
 * some attributes, runs by {@link #briefly} or {@link #creating}. Neither happens while a channel holds the file
 * exclusively, and such a channel waits for those that have begun before it locks the file.
 */
final class OpenFiles {
    private static final Map<Key, List<Use>> USES = new HashMap<>();

    /** How many open and close a file at this moment, by its key, or by the name under which it is created. */
    private static final Map<Object, Integer> BRIEF = new HashMap<>();

    private OpenFiles() {}

    /** One file, whatever name it is opened by: as the file system knows it, or by its path if it does not tell. */
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

        /** What is not to be closed before the lock ends. */
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
            parked.forEach(OpenFiles::closeUnread);
        }
    }

    /** Begins to use a file; returns null if that and another use exclude each other. */
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

    /** The name that a file was created by, unless it has been renamed since. */
    private static Object nameOf(Found found) throws IOException {
        return FileSystemTraits.isSharedByProcesses(found.fileSystem())
                ? found.path.toRealPath().getFileName()
                : found.path.getFileName();
    }

    /** Waits until nobody opens and closes a file any more. They never wait themselves, so it is not interrupted. */
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
     * Runs what opens and closes a file.
     *
     * @return false if a channel holds the file exclusively; nothing has happened then
     */
    static boolean briefly(Found found, IoAction action) throws IOException, ProviderException {
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

    /** The same for what has a name itself, be it a link; for an action that fails as file systems do. */
    static boolean briefly(Path path, IoAction action) throws IOException {
        BasicFileAttributes attributes = EntryKind.attributesOf(path, LinkOption.NOFOLLOW_LINKS);
        try {
            return briefly(new Found(/* location= */ null, path, attributes), action);
        } catch (ProviderException e) {
            throw new IOException(e);
        }
    }

    /** Runs what creates a file that was not there, and closes it. */
    static void creating(Path path, IoAction action) throws IOException, ProviderException {
        Object name = path.getFileName();
        synchronized (USES) {
            BRIEF.merge(name, 1, Integer::sum);
        }
        runBrief(name, action);
    }

    /**
     * Begins to read a file for as long as that takes, as a copy does. No channel can be opened exclusively meanwhile.
     *
     * @throws FileSystemException if one is
     */
    static Use reading(Path path) throws IOException {
        BasicFileAttributes attributes = EntryKind.attributesOf(path, LinkOption.NOFOLLOW_LINKS);
        Use use = begin(new Found(/* location= */ null, path, attributes), Mode.READ);
        if (use == null) {
            throw new FileSystemException(path.toString(), null, "is open exclusively");
        }
        return use;
    }

    private static void runBrief(Object what, IoAction action) throws IOException, ProviderException {
        try {
            action.run();
        } finally {
            synchronized (USES) {
                BRIEF.computeIfPresent(what, (key, count) -> count == 1 ? null : count - 1);
                USES.notifyAll();
            }
        }
    }

    /** Closes what was opened under the wrong name; if its file is held exclusively, as soon as it no longer is. */
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

    /** Nothing was written to it, so nothing is lost if that fails. */
    private static void closeUnread(Channel channel) {
        try {
            channel.close();
        } catch (IOException e) {
            System.getLogger(NioProvider.class.getName()).log(System.Logger.Level.WARNING, "Cannot close a file", e);
        }
    }

    private static boolean areExclusive(Use one, Use other) {
        if (one.mode == Mode.EXCLUSIVE || other.mode == Mode.EXCLUSIVE) {
            return true;
        }
        boolean bothWrite = one.mode == Mode.WRITE && other.mode == Mode.WRITE;
        return bothWrite && !FileSystemTraits.sharesWriting(one.path.getFileSystem());
    }

    /** Tells whether a file, or any below a folder, is open in a way that forbids to remove or move it. */
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

    /** Tells whether some channel can write to a file. */
    static boolean isWritten(Found found) {
        synchronized (USES) {
            return USES.getOrDefault(new Key(found), List.of()).stream().anyMatch(use -> use.mode != Mode.READ);
        }
    }
}
