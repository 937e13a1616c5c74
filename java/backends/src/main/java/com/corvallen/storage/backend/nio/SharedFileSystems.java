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
 * The file systems that mounts have opened, each with the number of mounts that use it. A process can open a file
 * system only once but may have many providers, so the last one closes it. A file system that other code has opened is
 * used too, but neither counted nor closed. Safe on any thread.
 */
final class SharedFileSystems {
    private static final Map<FileSystem, Shared> SHARED = new IdentityHashMap<>();

    private SharedFileSystems() {}

    /** A file system that mounts have opened. */
    private static final class Shared {
        final FileSystem system;

        /** Null for any other kind of file system. */
        final Archive archive;

        int users;

        Shared(FileSystem system, Archive archive) {
            this.system = system;
            this.archive = archive;
        }

        void close() throws IOException {
            if (archive == null) {
                system.close();
            } else {
                archive.close();
            }
        }
    }

    /** One mount's use of a file system; ends when it is closed. */
    static final class Lease implements AutoCloseable {
        private final Path root;

        /** Null if other code has opened the file system. */
        private final Shared shared;

        private boolean closed;

        private Lease(Path root, Shared shared) {
            this.root = root;
            this.shared = shared;
        }

        /** Returns the path that the URI names: the whole file system, or a folder in it. */
        Path root() {
            return root;
        }

        /** Called before each change. Throws InUseException if someone else writes the archive. */
        void beginWriting() throws IOException {
            if (shared != null && shared.archive != null) {
                shared.archive.beginWriting();
            }
        }

        @Override
        public void close() throws IOException {
            synchronized (SHARED) {
                if (!closed && shared != null) {
                    closed = true;
                    release(shared);
                }
            }
        }
    }

    static Lease lease(FileSystemProvider provider, URI uri) throws IOException {
        Path file = ArchiveNames.archiveOf(uri);
        synchronized (SHARED) {
            Shared own = file == null ? null : ownOf(file);
            if (own != null) {
                return leaseOf(own, uri);
            }
            FileSystem system = alreadyOpen(provider, uri);
            if (system == null) {
                return file == null ? open(provider, uri) : open(provider, uri, file);
            }
            Shared known = SHARED.get(system);
            return new Lease(rootOf(provider, uri, system), used(known));
        }
    }

    private static Shared ownOf(Path file) {
        for (Shared shared : SHARED.values()) {
            if (shared.archive != null && shared.archive.file().equals(file) && shared.system.isOpen()) {
                return shared;
            }
        }
        return null;
    }

    private static Shared used(Shared shared) {
        if (shared != null) {
            shared.users++;
        }
        return shared;
    }

    private static Lease open(FileSystemProvider provider, URI uri) throws IOException {
        FileSystem system = provider.newFileSystem(uri, Map.of());
        try {
            Shared shared = new Shared(system, null);
            Lease lease = new Lease(rootOf(provider, uri, system), used(shared));
            SHARED.put(system, shared);
            return lease;
        } catch (RuntimeException e) {
            system.close();
            throw e;
        }
    }

    private static Lease open(FileSystemProvider provider, URI uri, Path file) throws IOException {
        Archive archive = Archive.open(file, provider);
        try {
            Shared shared = new Shared(archive.system(), archive);
            Lease lease = leaseOf(shared, uri);
            SHARED.put(shared.system, shared);
            return lease;
        } catch (RuntimeException e) {
            archive.close();
            throw e;
        }
    }

    /** The platform cannot find by URI what was opened by path, so the inner path is resolved here. */
    private static Lease leaseOf(Shared shared, URI uri) {
        String text = uri.getSchemeSpecificPart();
        int inner = text.indexOf("!/");
        Path root = shared.system.getPath(inner < 0 ? "/" : text.substring(inner + 1));
        return new Lease(root, used(shared));
    }

    private static FileSystem alreadyOpen(FileSystemProvider provider, URI uri) {
        try {
            return provider.getPath(uri).getFileSystem();
        } catch (FileSystemNotFoundException e) {
            return null;
        } catch (IllegalArgumentException e) {
            // The URI names a file system but no path in it.
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

    private static void release(Shared shared) throws IOException {
        shared.users--;
        if (shared.users == 0) {
            SHARED.remove(shared.system);
            shared.close();
        }
    }
}
