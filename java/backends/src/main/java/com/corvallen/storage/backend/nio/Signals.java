package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.WatchEvent;
import java.nio.file.WatchKey;
import java.util.List;

/**
 * The signals of one file system that something has happened in a folder. They are only hints where to scan. Safe on
 * any thread; throws {@link java.nio.file.ClosedWatchServiceException} once closed.
 */
interface Signals extends AutoCloseable {
    /** Begins to signal changes of a folder's children. A second call for a folder may return the same key. */
    WatchKey register(Path folder) throws IOException;

    /** Waits for a key with events; returns null if there is none in time. */
    WatchKey poll(long nanos) throws InterruptedException;

    @Override
    void close() throws IOException;

    /** Opens the signals of file systems. */
    @FunctionalInterface
    interface Opener {
        /** Throws UnsupportedOperationException if the file system has no watch service. */
        Signals open(FileSystem system) throws IOException;
    }

    /** Learns what happens in a folder. Called on the watcher's thread, under its lock. */
    interface Listener {
        /** Something has happened in the folder. */
        void signalled(List<WatchEvent<?>> events, Changes changes);

        /** Something has happened, and the scan for it has failed. */
        void missed();

        /** The folder is no longer signalled: it is gone, or its file system is. */
        void lost(Changes changes);
    }
}
