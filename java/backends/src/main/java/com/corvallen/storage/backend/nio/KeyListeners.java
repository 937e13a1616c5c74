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

/**
 * The listeners of one watch key: for everything in its folder, or for one name there. Used under the watcher's lock.
 */
final class KeyListeners {
    private final Set<Signals.Listener> toAll = new LinkedHashSet<>();
    private final Map<Path, Set<Signals.Listener>> byName = new HashMap<>();

    void add(Signals.Listener listener, Path name) {
        (name == null ? toAll : byName.computeIfAbsent(name, unused -> new LinkedHashSet<>())).add(listener);
    }

    void remove(Signals.Listener listener, Path name) {
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

    /** Passes each event to the listeners for its name, and an event without a name to all. */
    void signal(List<WatchEvent<?>> events, Changes changes, Predicate<Signals.Listener> stays) {
        for (Signals.Listener listener : List.copyOf(toAll)) {
            if (stays.test(listener)) {
                listener.signalled(events, changes);
            }
        }
        if (byName.isEmpty()) {
            return;
        }
        Map<Signals.Listener, List<WatchEvent<?>>> named = new LinkedHashMap<>();
        for (WatchEvent<?> event : events) {
            for (Set<Signals.Listener> those : concernedBy(event)) {
                those.forEach(listener -> named.computeIfAbsent(listener, unused -> new ArrayList<>()).add(event));
            }
        }
        named.forEach((listener, those) -> {
            if (stays.test(listener)) {
                listener.signalled(those, changes);
            }
        });
    }

    private Iterable<Set<Signals.Listener>> concernedBy(WatchEvent<?> event) {
        return event.context() == null ? byName.values() : List.of(byName.getOrDefault(event.context(), Set.of()));
    }

    void lost(Changes changes, Predicate<Signals.Listener> stays) {
        List<Signals.Listener> everyone = new ArrayList<>(toAll);
        byName.values().forEach(everyone::addAll);
        for (Signals.Listener listener : everyone) {
            if (stays.test(listener)) {
                listener.lost(changes);
            }
        }
    }

    void missed() {
        toAll.forEach(Signals.Listener::missed);
        byName.values().forEach(those -> those.forEach(Signals.Listener::missed));
    }
}
