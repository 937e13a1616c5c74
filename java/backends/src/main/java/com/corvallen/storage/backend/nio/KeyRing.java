package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.lang.System.Logger.Level;
import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.WatchEvent;
import java.nio.file.WatchKey;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.IdentityHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.function.Consumer;

/**
 * Who listens to which key. A file system gives the same key for a folder however often it is asked, so a key has
 * several listeners if watched locations overlap, and is cancelled when the last has left.
 *
 * <p>Used under the watcher's lock, but for {@link #signals}.
 */
final class KeyRing {
    private final Signals.Opener opener;

    /** By file system; null for those that signal nothing. */
    private final Map<FileSystem, Signals> bySystem = new IdentityHashMap<>();

    private final Map<WatchKey, Set<SignalListener>> listeners = new HashMap<>();
    private final Map<SignalListener, WatchKey> keys = new IdentityHashMap<>();
    private volatile List<Signals> signals = List.of();

    KeyRing(Signals.Opener opener) {
        this.opener = opener;
    }

    /** Returns all that can be waited for. Safe on any thread. */
    List<Signals> signals() {
        return signals;
    }

    /** Has a folder signalled to a listener, if its file system can; otherwise it is to be polled. */
    void register(SignalListener listener, Path folder) {
        WatchKey key = keyOf(folder);
        if (key != null && key.equals(keys.get(listener))) {
            return;
        }
        unregister(listener);
        if (key != null) {
            keys.put(listener, key);
            listeners.computeIfAbsent(key, unused -> new LinkedHashSet<>()).add(listener);
        }
    }

    /** Some limit on keys may be reached, or the folder may not be read, or be gone: it is polled then. */
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

    void unregister(SignalListener listener) {
        WatchKey key = keys.remove(listener);
        if (key == null) {
            return;
        }
        Set<SignalListener> others = listeners.get(key);
        others.remove(listener);
        if (others.isEmpty()) {
            listeners.remove(key);
            key.cancel();
        }
    }

    boolean isSignalled(SignalListener listener) {
        WatchKey key = keys.get(listener);
        return key != null && key.isValid();
    }

    /** Tells whether a folder was signalled, and is no more, as it is when it was removed and made again. */
    boolean isLost(SignalListener listener) {
        WatchKey key = keys.get(listener);
        return key != null && !key.isValid();
    }

    /** Passes on what a key has to tell. */
    void dispatch(WatchKey key, Changes changes) {
        List<WatchEvent<?>> events = key.pollEvents();
        try {
            tell(key, listener -> listener.signalled(events, changes));
        } finally {
            if (!key.reset()) {
                tell(key, listener -> listener.lost(changes));
            }
        }
    }

    /** Listeners come and go meanwhile; whoever has left is not told any more. */
    private void tell(WatchKey key, Consumer<SignalListener> what) {
        for (SignalListener listener : List.copyOf(listeners.getOrDefault(key, Set.of()))) {
            if (key.equals(keys.get(listener))) {
                what.accept(listener);
            }
        }
    }

    /** Forgets signals that were closed together with their file system. */
    void forget(Signals closed) {
        bySystem.values().removeIf(source -> source == closed);
        publishSignals();
    }

    void close() {
        for (Signals source : signals) {
            try {
                source.close();
            } catch (IOException e) {
                System.getLogger(NioProvider.class.getName()).log(Level.WARNING, "Cannot stop watching", e);
            }
        }
        bySystem.clear();
        listeners.clear();
        keys.clear();
        publishSignals();
    }
}
