package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.FileSystem;
import java.util.Map;
import java.util.WeakHashMap;

/**
 * Makes "create unless it exists" one step on file systems that do not. These live inside the process, so one lock for
 * each of them is enough.
 */
final class FileSystemLocks {
    private static final Map<FileSystem, Object> LOCKS = new WeakHashMap<>();

    private FileSystemLocks() {}

    /** Runs an action, and no other under the same file system's lock meanwhile. */
    static void locked(FileSystem system, IoAction action) throws IOException, ProviderException {
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
