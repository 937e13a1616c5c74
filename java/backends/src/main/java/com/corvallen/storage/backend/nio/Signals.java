package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.WatchKey;

/**
 * Where one file system tells that something has happened in a folder. What it tells is taken as a hint where to look.
 * Safe on any thread; throws {@link java.nio.file.ClosedWatchServiceException} once closed.
 */
interface Signals extends AutoCloseable {
    /** Begins to signal changes of a folder's children; asking again for the same folder may return the same key. */
    WatchKey register(Path folder) throws IOException;

    /** Waits for a key with events, up to a time; returns null if there is none. */
    WatchKey poll(long nanos) throws InterruptedException;

    @Override
    void close() throws IOException;

    /** Opens the signals of file systems. */
    @FunctionalInterface
    interface Opener {
        /** Throws UnsupportedOperationException if the file system signals nothing. */
        Signals open(FileSystem system) throws IOException;
    }
}
