package com.corvallen.bench;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.FloorPublisher;
import com.corvallen.storage.provider.StorageURI;

/** Publishes one event over and over, through the library's publisher or through the floor's. */
public final class EventSource {
    private static final StorageURI WATCHED = new StorageURI("java://data/archive/2026");
    private static final StorageURI CHANGED = new StorageURI("java://data/archive/2026/annual-report.txt");
    private static final String ORIGIN = "client-0123456789";

    private static EventPublisher bridge;

    private EventSource() {}

    static void setBridge(EventPublisher publisher) {
        bridge = publisher;
    }

    /** Publishes through the publisher of the last start request. */
    public static void publishToBridge(int count) {
        publish(bridge, count);
    }

    public static void publishToFloor(FloorPublisher floor, int count) {
        publish(floor, count);
    }

    private static void publish(EventPublisher publisher, int count) {
        for (int i = 0; i < count; i++) {
            publisher.publish(EventKind.ChildModified, WATCHED, CHANGED, EntryType.File, ORIGIN);
        }
    }
}
