package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.lang.System.Logger.Level;
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
 * Watches the locations of one provider and tells their publishers, all on one daemon thread, which runs from the first
 * location on until disposal and sleeps while nothing is watched. No failure ends it: what a look has missed, the next
 * ones make up for. Nothing is published under a lock. Safe on any thread.
 */
final class Watcher {
    /** How often that is looked at which nothing signals. */
    static final Duration INTERVAL = Duration.ofSeconds(1);

    /** How long one file system may keep another waiting; only one can be waited for. */
    private static final Duration TURN = Duration.ofMillis(50);

    private final Object lock = new Object();
    private final KeyRing keys;
    private final long interval;
    private final ThreadFactory threads;

    private final Map<List<String>, Watch> watches = new LinkedHashMap<>();

    private final Set<EventPublisher> publishers = Collections.newSetFromMap(new IdentityHashMap<>());
    private Thread thread;

    /** Whose turn it is to be asked first, so that a busy file system does not keep the others waiting. */
    private int turn;

    private boolean disposed;

    /** When everything was looked at that nothing signals. Used by the thread only. */
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

    /** Begins to watch. When it returns, nothing that happens from then on is missed. */
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

    /** A watch has come to its end. Its last event is still to be told. */
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
                WatchLog.report(Level.ERROR, "Cannot watch for changes", e);
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
            look(key, due, changes);
            lastPoll = due ? System.nanoTime() : lastPoll;
        }
        changes.publish();
        return true;
    }

    private void look(WatchKey key, boolean due, Changes changes) {
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
    private static void attempt(Runnable look) {
        try {
            look.run();
        } catch (RuntimeException | Error e) {
            WatchLog.report(Level.ERROR, "Cannot look for changes", e);
        }
    }

    /** A failure that comes again at once must not keep a processor busy. */
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

    /** Waits for something to do, up to a time; only disposal ends the thread, so an interrupt means nothing. */
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

    /** Sleeps until something is watched, and on if nothing signals; returns false if there is a signal to wait for. */
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
     * Ends everything. When it returns, no publisher is delivering and none will, unless it is called from within a
     * delivery, which then ends after it.
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
            WatchLog.report(Level.ERROR, "Cannot close a publisher", e);
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
