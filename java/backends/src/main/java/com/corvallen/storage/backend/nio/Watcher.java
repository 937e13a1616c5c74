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
import java.util.ArrayList;
import java.util.Collections;
import java.util.IdentityHashMap;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.Set;

/**
 * Watches the locations of one provider and tells their publishers, all on one daemon thread, which runs from the first
 * location on until disposal and sleeps while nothing is watched. Nothing is published under a lock. Safe on any thread.
 */
final class Watcher {
    /** How often that is looked at which nothing signals. */
    static final Duration INTERVAL = Duration.ofSeconds(1);

    /** How long one file system may keep another waiting; only one can be waited for. */
    private static final Duration TURN = Duration.ofMillis(50);

    private final Object lock = new Object();
    private final KeyRing keys;
    private final long interval;

    /** By mount and names, since one location may be written in several ways. */
    private final Map<List<String>, Watch> watches = new LinkedHashMap<>();

    private final Set<EventPublisher> publishers = Collections.newSetFromMap(new IdentityHashMap<>());
    private Thread thread;

    /** Whose turn it is to be asked first, so that a busy file system does not keep the others waiting. */
    private int turn;

    private boolean disposed;

    Watcher(Signals.Opener opener, Duration interval) {
        this.keys = new KeyRing(opener);
        this.interval = interval.toNanos();
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
            watch(new Watch(this, found, mount, publisher));
            publishers.add(publisher);
            startThread();
            lock.notifyAll();
        }
    }

    private void watch(Watch watch) throws ProviderException {
        Watch known = watches.get(keyOf(watch.location()));
        if (known != null && known.isOfTheSame(watch)) {
            known.use(watch);
            return;
        }
        if (known != null) {
            known.stop();
            known.close();
        }
        watches.put(keyOf(watch.location()), watch);
        watch.open();
    }

    private static List<String> keyOf(StorageURI location) throws ProviderException {
        List<String> key = new ArrayList<>(location.getSegments());
        key.add(0, location.getMountName());
        return key;
    }

    private void startThread() {
        if (thread == null) {
            thread = new Thread(this::run, "storage-events");
            thread.setDaemon(true);
            thread.start();
        }
    }

    void stop(StorageURI location) throws ProviderException {
        synchronized (lock) {
            Watch watch = watches.remove(keyOf(location));
            if (watch != null) {
                watch.stop();
                watch.close();
            }
        }
    }

    boolean isWatching(Watch watch) {
        return watches.containsValue(watch);
    }

    /** A watch has come to its end. Its last event is still to be told. */
    void ended(Watch watch) {
        watch.close();
        watches.values().remove(watch);
    }

    private void run() {
        long last = System.nanoTime();
        while (true) {
            WatchKey key = await(interval - (System.nanoTime() - last));
            Changes changes = new Changes();
            synchronized (lock) {
                if (disposed) {
                    return;
                }
                boolean due = System.nanoTime() - last >= interval;
                look(key, due, changes);
                last = due ? System.nanoTime() : last;
            }
            changes.publish();
        }
    }

    private void look(WatchKey key, boolean due, Changes changes) {
        try {
            if (key != null) {
                keys.dispatch(key, changes);
            }
            if (due) {
                List.copyOf(watches.values()).forEach(watch -> watch.poll(changes));
            }
        } catch (RuntimeException e) {
            System.getLogger(NioProvider.class.getName()).log(Level.ERROR, "Cannot look for changes", e);
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

    /** Sleeps until something is watched, and on if nothing signals; returns false if there is something to wait for. */
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
            System.getLogger(NioProvider.class.getName()).log(Level.ERROR, "Cannot close a publisher", e);
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
