package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.WatchEvent;
import java.nio.file.WatchKey;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.IdentityHashMap;
import java.util.List;
import java.util.Map;

/**
 * Which listeners belong to which watch key. A file system returns the same key for a folder each time, so a key has
 * several listeners if watched locations overlap. It is cancelled when the last one leaves.
 *
 * <p>Used under the watcher's lock, except {@link #signals}.
 */
final class KeyRing {
    private final Signals.Opener opener;

    /** By file system; null for those without a watch service. */
    private final Map<FileSystem, Signals> bySystem = new IdentityHashMap<>();

    private final Map<WatchKey, KeyListeners> listeners = new HashMap<>();
    private final Map<Signals.Listener, Registration> registrations = new IdentityHashMap<>();
    private volatile List<Signals> signals = List.of();

    /** What a listener listens to. */
    private static final class Registration {
        final WatchKey key;

        /** Null for everything in the folder. */
        final Path name;

        Registration(WatchKey key, Path name) {
            this.key = key;
            this.name = name;
        }
    }

    KeyRing(Signals.Opener opener) {
        this.opener = opener;
    }

    /** Returns everything that can be waited for. Safe on any thread. */
    List<Signals> signals() {
        return signals;
    }

    /** Registers a listener for a folder, if the file system can signal; otherwise the folder is polled. */
    void register(Signals.Listener listener, Path folder) {
        register(listener, folder, /* name= */ null);
    }

    /** Registers a listener for one child of a folder. It costs the same however many others listen. */
    void register(Signals.Listener listener, Path folder, Path name) {
        WatchKey key = keyOf(folder);
        if (key != null && key.equals(keyHeldBy(listener))) {
            return;
        }
        unregister(listener);
        if (key != null) {
            registrations.put(listener, new Registration(key, name));
            listeners.computeIfAbsent(key, unused -> new KeyListeners()).add(listener, name);
        }
    }

    private WatchKey keyHeldBy(Signals.Listener listener) {
        Registration registration = registrations.get(listener);
        return registration == null ? null : registration.key;
    }

    /**
     * Returns null if there is no key: a limit may be reached, or the folder be gone or unreadable. It is polled then.
     */
    private WatchKey keyOf(Path folder) {
        try {
            Signals source = signalsOf(folder.getFileSystem());
            return source == null ? null : source.register(folder);
        } catch (IOException | RuntimeException e) {
            return null;
        }
    }

    private Signals signalsOf(FileSystem system) throws IOException {
        if (!bySystem.containsKey(system)) {
            bySystem.put(system, open(system));
            publishSignals();
        }
        return bySystem.get(system);
    }

    private Signals open(FileSystem system) throws IOException {
        try {
            return opener.open(system);
        } catch (UnsupportedOperationException e) {
            return null;
        }
    }

    private void publishSignals() {
        List<Signals> open = new ArrayList<>();
        for (Signals source : bySystem.values()) {
            if (source != null) {
                open.add(source);
            }
        }
        signals = List.copyOf(open);
    }

    void unregister(Signals.Listener listener) {
        Registration registration = registrations.remove(listener);
        if (registration == null) {
            return;
        }
        KeyListeners others = listeners.get(registration.key);
        others.remove(listener, registration.name);
        if (others.isEmpty()) {
            listeners.remove(registration.key);
            registration.key.cancel();
        }
    }

    boolean isSignalled(Signals.Listener listener) {
        WatchKey key = keyHeldBy(listener);
        return key != null && key.isValid();
    }

    /** Tells whether a folder has lost its key, as happens when it is removed and created again. */
    boolean isLost(Signals.Listener listener) {
        WatchKey key = keyHeldBy(listener);
        return key != null && !key.isValid();
    }

    /** Passes on the events of a key. Listeners may come and go during this; one that has left gets nothing more. */
    void dispatch(WatchKey key, Changes changes) {
        KeyListeners concerned = listeners.get(key);
        try {
            List<WatchEvent<?>> events = key.pollEvents();
            if (concerned != null) {
                concerned.signal(events, changes, listener -> key.equals(keyHeldBy(listener)));
            }
        } catch (RuntimeException | Error e) {
            if (concerned != null) {
                concerned.missed();
            }
            throw e;
        } finally {
            if (!key.reset() && concerned != null) {
                concerned.lost(changes, listener -> key.equals(keyHeldBy(listener)));
            }
        }
    }

    /** Forgets a watch service that was closed with its file system. */
    void forget(Signals closed) {
        bySystem.values().removeIf(source -> source == closed);
        publishSignals();
    }

    void close() {
        for (Signals source : signals) {
            try {
                source.close();
            } catch (IOException e) {
                Log.warning("Cannot stop watching", e);
            }
        }
        bySystem.clear();
        listeners.clear();
        registrations.clear();
        publishSignals();
    }
}
