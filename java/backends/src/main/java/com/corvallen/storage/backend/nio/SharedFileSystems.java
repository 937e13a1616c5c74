package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.net.URI;
import java.nio.file.FileSystem;
import java.nio.file.FileSystemNotFoundException;
import java.nio.file.Path;
import java.nio.file.spi.FileSystemProvider;
import java.util.IdentityHashMap;
import java.util.Map;

/**
 * The file systems that mounts have opened, with the number of mounts that use each. A file system can be open only
 * once in a process, and a process may have many providers: the last one closes it. What someone else has opened is
 * used too, but not counted and not closed. Safe on any thread.
 */
final class SharedFileSystems {
    private static final Map<FileSystem, Integer> USERS = new IdentityHashMap<>();

    private SharedFileSystems() {}

    /** One mount's use of a file system; ends when it is closed. */
    static final class Lease implements AutoCloseable {
        private final Path root;
        private boolean closed;

        private Lease(Path root) {
            this.root = root;
        }

        /** Returns the path that the URI names: the whole file system, or a folder in it. */
        Path root() {
            return root;
        }

        @Override
        public void close() throws IOException {
            synchronized (USERS) {
                if (!closed) {
                    closed = true;
                    release(root.getFileSystem());
                }
            }
        }
    }

    static Lease lease(FileSystemProvider provider, URI uri) throws IOException {
        synchronized (USERS) {
            FileSystem system = alreadyOpen(provider, uri);
            if (system != null) {
                USERS.computeIfPresent(system, (key, users) -> users + 1);
                return new Lease(rootOf(provider, uri, system));
            }
            return open(provider, uri);
        }
    }

    private static Lease open(FileSystemProvider provider, URI uri) throws IOException {
        ArchiveNames.requireClear(uri);
        FileSystem system = provider.newFileSystem(uri, Map.of());
        try {
            Lease lease = new Lease(rootOf(provider, uri, system));
            USERS.put(system, 1);
            return lease;
        } catch (RuntimeException e) {
            system.close();
            throw e;
        }
    }

    private static FileSystem alreadyOpen(FileSystemProvider provider, URI uri) {
        try {
            return provider.getPath(uri).getFileSystem();
        } catch (FileSystemNotFoundException e) {
            return null;
        } catch (IllegalArgumentException e) {
            // The URI names a file system and no path in it.
            return alreadyOpenAsAWhole(provider, uri);
        }
    }

    private static FileSystem alreadyOpenAsAWhole(FileSystemProvider provider, URI uri) {
        try {
            return provider.getFileSystem(uri);
        } catch (FileSystemNotFoundException e) {
            return null;
        }
    }

    private static Path rootOf(FileSystemProvider provider, URI uri, FileSystem system) {
        try {
            return provider.getPath(uri);
        } catch (IllegalArgumentException e) {
            return system.getRootDirectories().iterator().next();
        }
    }

    private static void release(FileSystem system) throws IOException {
        Integer users = USERS.get(system);
        if (users == null) {
            return;
        }
        if (users > 1) {
            USERS.put(system, users - 1);
            return;
        }
        USERS.remove(system);
        system.close();
    }
}
