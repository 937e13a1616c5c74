package com.corvallen.storage.contract;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.StorageURI;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.TimeUnit;
import java.util.function.Predicate;
import java.util.stream.Collectors;

/** Records events, and lets tests wait for them. Safe on any thread. */
public class RecordingPublisher implements EventPublisher {
    private static final long DEADLINE = TimeUnit.SECONDS.toNanos(30);

    private final List<Event> events = new ArrayList<>();
    private boolean closed;

    /** One event. */
    public static final class Event {
        public final EventKind kind;
        public final StorageURI watched;
        public final StorageURI changed;
        public final EntryType type;

        Event(EventKind kind, StorageURI watched, StorageURI changed, EntryType type) {
            this.kind = kind;
            this.watched = watched;
            this.changed = changed;
            this.type = type;
        }

        @Override
        public String toString() {
            return kind + " " + type + " " + changed;
        }
    }

    @Override
    public synchronized void publish(
            EventKind kind, StorageURI watched, StorageURI changed, EntryType type, String originId) {
        if (!closed) {
            events.add(new Event(kind, watched, changed, type));
            notifyAll();
        }
    }

    @Override
    public synchronized void close() {
        closed = true;
    }

    public synchronized boolean isClosed() {
        return closed;
    }

    public synchronized List<Event> events() {
        return new ArrayList<>(events);
    }

    /** Returns the events about one location, as text. */
    public List<String> eventsOf(StorageURI changed) {
        return events().stream()
                .filter(event -> event.changed.equals(changed))
                .map(event -> event.kind + " " + event.type)
                .collect(Collectors.toList());
    }

    /** Waits until the events so far are the expected ones. */
    public synchronized void await(Predicate<List<Event>> condition) throws InterruptedException {
        long end = System.nanoTime() + DEADLINE;
        while (!condition.test(events)) {
            long left = TimeUnit.NANOSECONDS.toMillis(end - System.nanoTime());
            if (left <= 0) {
                throw new AssertionError("only these came: " + events);
            }
            wait(left);
        }
    }

    /** Waits for an event. */
    public void await(EventKind kind, EntryType type, StorageURI changed) throws InterruptedException {
        await(all -> all.stream()
                .anyMatch(event -> event.kind == kind && event.type == type && event.changed.equals(changed)));
    }
}
