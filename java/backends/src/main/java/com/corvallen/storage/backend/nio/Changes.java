package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.StorageURI;
import java.util.ArrayList;
import java.util.List;

/** What was found to have changed, in the order in which it is told, until no lock is held any more. */
final class Changes {
    private final List<Runnable> events = new ArrayList<>();

    void add(Watch watch, EventKind kind, StorageURI changed, EntryType type) {
        events.add(() -> watch.publish(kind, changed, type));
    }

    void publish() {
        events.forEach(Runnable::run);
    }
}
