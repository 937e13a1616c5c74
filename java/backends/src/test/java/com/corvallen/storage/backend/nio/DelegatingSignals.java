package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.WatchEvent;
import java.nio.file.WatchKey;
import java.nio.file.Watchable;
import java.util.List;
import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;

/** The real signals of a file system, with keys that a test can replace. */
class DelegatingSignals implements Signals {
    private final Signals signals;
    private final Map<WatchKey, WatchKey> keys = new ConcurrentHashMap<>();

    DelegatingSignals(FileSystem system) throws IOException {
        signals = WatchSignals.open(system);
    }

    /** Returns what stands for a key from now on. */
    WatchKey replaced(WatchKey key) {
        return key;
    }

    @Override
    public WatchKey register(Path folder) throws IOException {
        return keys.computeIfAbsent(signals.register(folder), this::replaced);
    }

    @Override
    public WatchKey poll(long nanos) throws InterruptedException {
        WatchKey key = signals.poll(nanos);
        return key == null ? null : keys.computeIfAbsent(key, this::replaced);
    }

    @Override
    public void close() throws IOException {
        signals.close();
    }

    /** A key that passes everything on. */
    static class Key implements WatchKey {
        private final WatchKey key;

        Key(WatchKey key) {
            this.key = key;
        }

        @Override
        public List<WatchEvent<?>> pollEvents() {
            return key.pollEvents();
        }

        @Override
        public boolean isValid() {
            return key.isValid();
        }

        @Override
        public boolean reset() {
            return key.reset();
        }

        @Override
        public void cancel() {
            key.cancel();
        }

        @Override
        public Watchable watchable() {
            return key.watchable();
        }
    }
}
