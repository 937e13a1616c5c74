package com.corvallen.storage.test.data;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.StorageURI;
import com.corvallen.storage.test.NativeCallback;
import java.lang.ref.WeakReference;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.TimeUnit;
import java.util.concurrent.atomic.AtomicInteger;
import java.util.function.IntConsumer;

/**
 * The publishers that back ends were handed since the last {@link #reset}, and what tests do with them. The static
 * methods work on those of the current test. Safe on any thread.
 */
public final class Publishers {
    private static final long DEADLINE_SECONDS = 60;

    private static volatile Publishers current = new Publishers();

    private final List<WeakReference<EventPublisher>> known = new ArrayList<>();
    private final List<EventPublisher> kept = new ArrayList<>();
    private final List<String> handedOver = new ArrayList<>();
    private boolean keeps = true;
    private final AtomicInteger attempts = new AtomicInteger();
    private volatile boolean stormEnds;
    private List<Thread> storm = List.of();

    private Publishers() {}

    static Publishers current() {
        return current;
    }

    /** Begins anew: back ends made from now on have nothing to do with those of before. */
    public static void reset() {
        current = new Publishers();
    }

    /** For each start request the number of its publisher, counted from 0 in order of appearance, or "null". */
    public static String[] numbers() {
        synchronized (current) {
            return current.handedOver.toArray(new String[0]);
        }
    }

    /** From now on no publisher is kept alive. */
    public static void forget() {
        synchronized (current) {
            current.keeps = false;
            current.kept.clear();
        }
    }

    /** Publishers are kept alive again, as they are at first. */
    public static void keep() {
        synchronized (current) {
            current.keeps = true;
        }
    }

    /** Waits until the machine has collected all publishers; they must have been forgotten. */
    public static void awaitCollection() throws InterruptedException {
        long deadline = System.nanoTime() + TimeUnit.SECONDS.toNanos(DEADLINE_SECONDS);
        while (!current.allCollected()) {
            if (System.nanoTime() > deadline) {
                throw new IllegalStateException("a publisher stays alive");
            }
            System.gc();
        }
    }

    public static void collectGarbage(String times) {
        for (int i = 0; i < Integer.parseInt(times); i++) {
            System.gc();
        }
    }

    /** Publishes one event through the publisher that was handed over last. */
    public static void publish(String kind, String watched, String changed, String entryType, String originId) {
        current.newest()
                .publish(
                        EventKind.valueOf(kind),
                        new StorageURI(watched),
                        new StorageURI(changed),
                        EntryType.valueOf(entryType),
                        originId);
    }

    /** The same from a thread that Java starts. */
    public static void publishOnNewThread(
            String kind, String watched, String changed, String entryType, String originId)
            throws InterruptedException {
        Thread thread = new Thread(() -> publish(kind, watched, changed, entryType, originId));
        thread.start();
        thread.join();
    }

    /** Calls native code back on a thread that Java starts, and waits for it. */
    public static void callBackOnNewThread() throws InterruptedException {
        Thread thread = new Thread(NativeCallback::call);
        thread.start();
        thread.join();
    }

    /** Publishes so many events on each of so many threads, and waits for all; see {@link #publishNumbered}. */
    public static void publishMany(String threads, String each) throws InterruptedException {
        int count = Integer.parseInt(each);
        List<Thread> running = onThreads(threads, thread -> {
            for (int n = 0; n < count; n++) {
                current.publishNumbered(thread, n);
            }
        });
        for (Thread thread : running) {
            thread.join();
        }
    }

    /** Publishes without end on so many threads. */
    public static void startStorm(String threads) {
        Publishers publishers = current;
        publishers.storm = onThreads(threads, thread -> {
            for (int n = 0; !publishers.stormEnds; n++) {
                publishers.publishNumbered(thread, n);
                publishers.attempts.incrementAndGet();
            }
        });
    }

    /** How many events the storm has tried to publish, delivered or not. */
    public static int attempts() {
        return current.attempts.get();
    }

    /** Ends what {@link #startStorm} began. */
    public static void endStorm() throws InterruptedException {
        current.stormEnds = true;
        for (Thread thread : current.storm) {
            thread.join();
        }
    }

    /** Notes a publisher, null included. */
    synchronized void handedOver(EventPublisher publisher) {
        handedOver.add(publisher == null ? "null" : Integer.toString(numberOf(publisher)));
        if (keeps && publisher != null) {
            kept.add(publisher);
        }
    }

    /** Closes all that are kept. */
    void close() {
        List<EventPublisher> closing;
        synchronized (this) {
            closing = List.copyOf(kept);
        }
        closing.forEach(EventPublisher::close);
    }

    private static List<Thread> onThreads(String threads, IntConsumer action) {
        List<Thread> started = new ArrayList<>();
        for (int i = 0; i < Integer.parseInt(threads); i++) {
            int number = i;
            Thread thread = new Thread(() -> action.accept(number));
            thread.setDaemon(true);
            thread.start();
            started.add(thread);
        }
        return started;
    }

    /** All five values of the event name the thread and the number, so that a torn event would show. */
    private void publishNumbered(int thread, int n) {
        EventKind[] kinds = EventKind.values();
        String tag = thread + "/" + n;
        newest().publish(
                        kinds[n % kinds.length],
                        new StorageURI("java://watched/" + tag),
                        new StorageURI("java://changed/" + tag),
                        n % 2 == 0 ? EntryType.File : EntryType.Folder,
                        tag);
    }

    private synchronized EventPublisher newest() {
        return kept.get(kept.size() - 1);
    }

    private synchronized boolean allCollected() {
        return known.stream().allMatch(reference -> reference.get() == null);
    }

    private int numberOf(EventPublisher publisher) {
        for (int i = 0; i < known.size(); i++) {
            if (known.get(i).get() == publisher) {
                return i;
            }
        }
        known.add(new WeakReference<>(publisher));
        return known.size() - 1;
    }
}
