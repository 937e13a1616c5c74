package com.corvallen.storage.backend.nio;

import java.lang.ref.Cleaner;
import java.util.HashSet;
import java.util.List;
import java.util.Set;

/**
 * The open channels of one provider. Releases channels that became garbage without being closed. Safe on any thread.
 */
final class ChannelSet {
    private static final Cleaner CLEANER = Cleaner.create();

    /** Holds the files, not the channels: a channel in here would never become garbage. */
    private final Set<OpenFile> files = new HashSet<>();

    private boolean disposed;

    /**
     * Adds an open file.
     *
     * @return false if the set is disposed of; the file has been closed then
     */
    boolean add(OpenFile file) {
        synchronized (this) {
            if (!disposed) {
                return files.add(file);
            }
        }
        file.abandon();
        return false;
    }

    /** Closes a file when its channel becomes garbage. */
    static void releaseWith(NioChannel channel, OpenFile file) {
        CLEANER.register(channel, file::abandon);
    }

    synchronized void remove(OpenFile file) {
        files.remove(file);
    }

    synchronized int size() {
        return files.size();
    }

    /** Closes all files that are open, and those that are added later. */
    void dispose() {
        List<OpenFile> open;
        synchronized (this) {
            disposed = true;
            open = List.copyOf(files);
        }
        for (OpenFile file : open) {
            file.abandon();
        }
    }
}
