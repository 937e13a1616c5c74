package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.ClosedWatchServiceException;
import java.nio.file.WatchKey;
import java.time.Duration;
import java.util.Collections;
import java.util.IdentityHashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.ThreadFactory;

/**
 * Watches the locations of one provider and publishes their events, all on one daemon thread. The thread starts with
 * the first location, sleeps while nothing is watched, and ends on disposal. No failure ends it: later scans find what
 * a failed one has missed. Nothing is published under a lock. Safe on any thread.
 */
final class Watcher {
    /** How often folders without a watch key are scanned. */
    static final Duration INTERVAL = Duration.ofSeconds(1);

    /** How long to wait for one file system while others may signal: only one can be waited for. */
    private static final Duration TURN = Duration.ofMillis(50);

    private final Object lock = new Object();
    private final KeyRing keys;
    private final long interval;
    private final ThreadFactory threads;

    private final Map<List<String>, Watch> watches = new LinkedHashMap<>();

    private final Set<EventPublisher> publishers = Collections.newSetFromMap(new IdentityHashMap<>());
    private Thread thread;

    /** Which file system to ask first; it rotates, so that a busy one does not keep the others waiting. */
    private int turn;

    private boolean disposed;

    /** When everything without a watch key was last scanned. Used only by the thread. */
    private long lastPoll = System.nanoTime();

    Watcher(Signals.Opener opener, Duration interval) {
        this(opener, interval, work -> new Thread(work, "storage-events"));
    }

    Watcher(Signals.Opener opener, Duration interval, ThreadFactory threads) {
        this.keys = new KeyRing(opener);
        this.interval = interval.toNanos();
        this.threads = threads;
    }

    KeyRing keys() {
        return keys;
    }

    /** Begins to watch. Nothing that happens after this returns is missed. */
    void start(Found found, Mount mount, EventPublisher publisher) throws IOException, ProviderException {
        synchronized (lock) {
            if (disposed) {
                throw new ProviderException(
                        ErrorCode.UNAVAILABLE, found.location, "the provider of " + found.location + " is disposed of");
            }
            startThread();
            watch(new Watch(this, found, mount, publisher));
            publishers.add(publisher);
            lock.notifyAll();
        }
    }

    private void watch(Watch watch) {
        Watch known = watches.get(watch.key());
        if (known != null && known.isOfTheSame(watch)) {
            known.use(watch);
            return;
        }
        if (known != null) {
            known.stop();
            known.close();
        }
        watches.put(watch.key(), watch);
        try {
            watch.open();
        } catch (RuntimeException | Error e) {
            ended(watch);
            throw e;
        }
    }

    private void startThread() {
        if (thread == null || !thread.isAlive()) {
            Thread fresh = threads.newThread(this::run);
            fresh.setDaemon(true);
            fresh.start();
            thread = fresh;
        }
    }

    void stop(StorageURI location) throws ProviderException {
        synchronized (lock) {
            Watch watch = watches.remove(Watch.keyOf(location));
            if (watch != null) {
                watch.stop();
                watch.close();
            }
        }
    }

    /** Called when a watch has ended. Its last event is still to be published. */
    void ended(Watch watch) {
        watch.close();
        watches.remove(watch.key(), watch);
    }

    private void run() {
        while (true) {
            try {
                if (!turn()) {
                    return;
                }
            } catch (RuntimeException | Error e) {
                Log.error("Cannot watch for changes", e);
                pause();
            }
        }
    }

    /** Waits until there is something to scan, scans it, and reports; returns false after disposal. */
    private boolean turn() {
        WatchKey key = await(interval - (System.nanoTime() - lastPoll));
        Changes changes = new Changes();
        synchronized (lock) {
            if (disposed) {
                return false;
            }
            boolean due = System.nanoTime() - lastPoll >= interval;
            scan(key, due, changes);
            lastPoll = due ? System.nanoTime() : lastPoll;
        }
        changes.publish();
        return true;
    }

    private void scan(WatchKey key, boolean due, Changes changes) {
        if (key != null) {
            attempt(() -> keys.dispatch(key, changes));
        }
        if (due) {
            List.copyOf(watches.values()).forEach(watch -> attempt(() -> watch.poll(changes)));
        }
        for (WatchedFolder folder = changes.nextFolder(); folder != null; folder = changes.nextFolder()) {
            WatchedFolder next = folder;
            attempt(() -> next.refresh(changes));
        }
    }

    /** What fails is scanned again at the next poll, and what was found up to then is reported. */
    private static void attempt(Runnable scan) {
        try {
            scan.run();
        } catch (RuntimeException | Error e) {
            Log.error("Cannot scan for changes", e);
        }
    }

    /** Waits, so that a failure that repeats at once does not keep a processor busy. */
    private void pause() {
        try {
            synchronized (lock) {
                if (!disposed) {
                    lock.wait(Math.max(1, interval / 1_000_000));
                }
            }
        } catch (InterruptedException e) {
            return;
        }
    }

    /** Waits for a signal for some time. Only disposal ends the thread, so an interrupt is ignored. */
    private WatchKey await(long nanos) {
        try {
            List<Signals> signals = keys.signals();
            for (int i = 0; i < signals.size(); i++) {
                WatchKey key = poll(signals.get(Math.floorMod(turn++, signals.size())), 0);
                if (key != null) {
                    return key;
                }
            }
            return nanos <= 0 || sleep(nanos) ? null : awaitFirst(nanos);
        } catch (InterruptedException e) {
            return null;
        }
    }

    /**
     * Sleeps until something is watched, and then until the next poll; returns false if there is a signal to wait for.
     */
    private boolean sleep(long nanos) throws InterruptedException {
        synchronized (lock) {
            while (watches.isEmpty() && !disposed) {
                lock.wait();
            }
            if (disposed || !keys.signals().isEmpty()) {
                return disposed;
            }
            lock.wait(Math.max(1, nanos / 1_000_000));
            return true;
        }
    }

    private WatchKey awaitFirst(long nanos) throws InterruptedException {
        List<Signals> signals = keys.signals();
        if (signals.isEmpty()) {
            return null;
        }
        return poll(signals.get(0), signals.size() == 1 ? nanos : Math.min(nanos, TURN.toNanos()));
    }

    private WatchKey poll(Signals source, long nanos) throws InterruptedException {
        try {
            return source.poll(nanos);
        } catch (ClosedWatchServiceException e) {
            synchronized (lock) {
                keys.forget(source);
            }
            return null;
        }
    }

    /**
     * Ends everything. When it returns, no publisher is delivering, and none will. Called from within a delivery, it
     * returns before that delivery ends.
     */
    void dispose() {
        List<EventPublisher> open;
        Thread running;
        synchronized (lock) {
            disposed = true;
            for (Watch watch : watches.values()) {
                watch.stop();
            }
            watches.clear();
            keys.close();
            open = List.copyOf(publishers);
            running = thread;
            lock.notifyAll();
        }
        for (EventPublisher publisher : open) {
            close(publisher);
        }
        if (running != null && running != Thread.currentThread()) {
            join(running);
        }
    }

    private static void close(EventPublisher publisher) {
        try {
            publisher.close();
        } catch (RuntimeException e) {
            Log.error("Cannot close a publisher", e);
        }
    }

    private static void join(Thread running) {
        boolean interrupted = false;
        while (running.isAlive()) {
            try {
                running.join();
            } catch (InterruptedException e) {
                interrupted = true;
            }
        }
        if (interrupted) {
            Thread.currentThread().interrupt();
        }
    }
}
