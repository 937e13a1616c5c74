package com.corvallen.storage.backend.nio;

import java.lang.ref.Cleaner;
import java.util.HashSet;
import java.util.List;
import java.util.Set;

/** The open channels of one provider. Channels that nobody remembers are released. Safe on any thread. */
final class ChannelSet {
    private static final Cleaner CLEANER = Cleaner.create();

    /** Not the channels, which could not be forgotten then. */
    private final Set<OpenFile> files = new HashSet<>();

    private boolean disposed;

    /**
     * Adds an open file.
     *
     * @return false if the set is disposed of; the file is closed then
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

    /** Has a file closed when its channel is forgotten. */
    static void releaseWith(NioChannel channel, OpenFile file) {
        CLEANER.register(channel, file::abandon);
    }

    synchronized void remove(OpenFile file) {
        files.remove(file);
    }

    synchronized int size() {
        return files.size();
    }

    /** Closes all that are open, and all that come later. */
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
