package com.corvallen.storage.backend.nio;

import java.nio.file.Path;
import java.nio.file.WatchEvent;
import java.util.ArrayList;
import java.util.HashMap;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Set;
import java.util.function.Predicate;

/** The listeners of one key: to everything in its folder, or to one name there. Used under the watcher's lock. */
final class KeyListeners {
    private final Set<SignalListener> toAll = new LinkedHashSet<>();
    private final Map<Path, Set<SignalListener>> byName = new HashMap<>();

    void add(SignalListener listener, Path name) {
        (name == null ? toAll : byName.computeIfAbsent(name, unused -> new LinkedHashSet<>())).add(listener);
    }

    void remove(SignalListener listener, Path name) {
        if (name == null) {
            toAll.remove(listener);
            return;
        }
        byName.computeIfPresent(name, (unused, others) -> {
            others.remove(listener);
            return others.isEmpty() ? null : others;
        });
    }

    boolean isEmpty() {
        return toAll.isEmpty() && byName.isEmpty();
    }

    /** Signals each event to those that listen to its name, and one that names nothing to everyone. */
    void signal(List<WatchEvent<?>> events, Changes changes, Predicate<SignalListener> stays) {
        for (SignalListener listener : List.copyOf(toAll)) {
            if (stays.test(listener)) {
                listener.signalled(events, changes);
            }
        }
        if (byName.isEmpty()) {
            return;
        }
        Map<SignalListener, List<WatchEvent<?>>> named = new LinkedHashMap<>();
        for (WatchEvent<?> event : events) {
            for (Set<SignalListener> those : concernedBy(event)) {
                those.forEach(listener -> named.computeIfAbsent(listener, unused -> new ArrayList<>()).add(event));
            }
        }
        named.forEach((listener, those) -> {
            if (stays.test(listener)) {
                listener.signalled(those, changes);
            }
        });
    }

    private Iterable<Set<SignalListener>> concernedBy(WatchEvent<?> event) {
        return event.context() == null ? byName.values() : List.of(byName.getOrDefault(event.context(), Set.of()));
    }

    void lost(Changes changes, Predicate<SignalListener> stays) {
        List<SignalListener> everyone = new ArrayList<>(toAll);
        byName.values().forEach(everyone::addAll);
        for (SignalListener listener : everyone) {
            if (stays.test(listener)) {
                listener.lost(changes);
            }
        }
    }

    void missed() {
        toAll.forEach(SignalListener::missed);
        byName.values().forEach(those -> those.forEach(SignalListener::missed));
    }
}
