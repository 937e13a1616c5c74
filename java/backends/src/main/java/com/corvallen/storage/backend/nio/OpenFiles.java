package com.corvallen.storage.backend.nio;

import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.List;
import java.util.Map;
import java.util.Objects;

/**
 * The files that channels are open on, of all providers of this process, and who may join. Safe on any thread.
 */
final class OpenFiles {
    private static final Map<Key, List<Use>> USES = new HashMap<>();

    private OpenFiles() {}

    /** One file, whatever name it is opened by: as the file system knows it, or by its path if it does not tell. */
    private static final class Key {
        private final FileSystem system;
        private final Object file;

        Key(Found found) {
            this.system = found.fileSystem();
            Object known = found.attributes.fileKey();
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
        }
    }

    /** Begins to use a file; returns null if that and another use exclude each other. */
    static Use begin(Found found, Mode mode) {
        Use use = new Use(found, mode);
        synchronized (USES) {
            List<Use> others = USES.computeIfAbsent(use.key, key -> new ArrayList<>());
            boolean refused = others.stream().anyMatch(other -> areExclusive(use, other));
            if (!refused) {
                others.add(use);
            }
            return refused ? null : use;
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
