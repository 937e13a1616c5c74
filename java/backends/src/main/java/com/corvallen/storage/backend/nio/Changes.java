package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.StorageURI;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.List;

/**
 * What one scan finds: the events, in order, to be published when no lock is held, and the folders that are still to be
 * scanned. Folders wait here and not on the stack, so no tree is too deep.
 */
final class Changes {
    private final List<Runnable> events = new ArrayList<>();
    private final Deque<WatchedFolder> folders = new ArrayDeque<>();

    void add(Watch watch, EventKind kind, StorageURI changed, EntryType type) {
        events.add(() -> watch.publish(kind, changed, type));
    }

    /** Adds a folder to be scanned. */
    void add(WatchedFolder folder) {
        folders.push(folder);
    }

    /** Returns a folder to be scanned, null if there is none left. */
    WatchedFolder nextFolder() {
        return folders.poll();
    }

    void publish() {
        events.forEach(Runnable::run);
    }
}
