package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.FileSystem;
import java.util.Map;
import java.util.WeakHashMap;

/**
 * Makes "create unless it exists" one step on file systems that cannot. They live inside the process, so one lock for
 * each is enough.
 */
final class FileSystemLocks {
    private static final Map<FileSystem, Object> LOCKS = new WeakHashMap<>();

    private FileSystemLocks() {}

    /** Runs an action while no other runs under the same file system's lock. */
    static void locked(FileSystem system, Failures.Action action) throws IOException, ProviderException {
        synchronized (lockOf(system)) {
            action.run();
        }
    }

    private static Object lockOf(FileSystem system) {
        synchronized (LOCKS) {
            return LOCKS.computeIfAbsent(system, key -> new Object());
        }
    }
}
