package com.corvallen.storage.test.soak;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.StorageURI;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.ExecutorService;
import java.util.concurrent.Executors;
import java.util.concurrent.ThreadPoolExecutor;
import java.util.concurrent.atomic.AtomicLong;

/** The events of one back end: a few on the thread that starts them, a few on threads that all back ends share. */
final class Storm implements AutoCloseable {
    private static final int MOST_WAITING = 1000;
    private static final EventKind[] KINDS = EventKind.values();
    private static final AtomicLong PUBLISHED = new AtomicLong();
    private static final ExecutorService THREADS = Executors.newFixedThreadPool(2, action -> {
        Thread thread = new Thread(action, "storm");
        thread.setDaemon(true);
        return thread;
    });

    private final Set<EventPublisher> publishers = ConcurrentHashMap.newKeySet();

    static long published() {
        return PUBLISHED.get();
    }

    /** Whether no thread has an event to publish. */
    static boolean isQuiet() {
        ThreadPoolExecutor threads = (ThreadPoolExecutor) THREADS;
        return threads.getQueue().isEmpty() && threads.getActiveCount() == 0;
    }

    void publishFrom(StorageURI location, EventPublisher publisher) {
        publishers.add(publisher);
        publish(location, publisher);
        if (((ThreadPoolExecutor) THREADS).getQueue().size() < MOST_WAITING) {
            THREADS.execute(() -> publish(location, publisher));
        }
    }

    private static void publish(StorageURI location, EventPublisher publisher) {
        for (int count = 1 + Chance.below(3); count > 0; --count) {
            EventKind kind = KINDS[Chance.below(KINDS.length)];
            publisher.publish(kind, location, location, EntryType.File, count == 1 ? null : "soak");
            PUBLISHED.incrementAndGet();
        }
    }

    @Override
    public void close() {
        publishers.forEach(EventPublisher::close);
    }
}
