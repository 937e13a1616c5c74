package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Path;
import java.nio.file.StandardWatchEventKinds;
import java.nio.file.WatchEvent;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.Test;

/** An event reaches only the listeners for its name, however many listen in a folder. */
class KeyListenersTest {
    private final KeyListeners listeners = new KeyListeners();
    private final List<Listener> signalled = new ArrayList<>();

    private final class Listener implements Signals.Listener {
        private final List<WatchEvent<?>> events = new ArrayList<>();
        private int lost;
        private int missed;

        @Override
        public void signalled(List<WatchEvent<?>> these, Changes changes) {
            signalled.add(this);
            events.addAll(these);
        }

        @Override
        public void missed() {
            missed++;
        }

        @Override
        public void lost(Changes changes) {
            lost++;
        }
    }

    private static WatchEvent<Path> event(Path name) {
        return new WatchEvent<>() {
            @Override
            public Kind<Path> kind() {
                return StandardWatchEventKinds.ENTRY_MODIFY;
            }

            @Override
            public int count() {
                return 1;
            }

            @Override
            public Path context() {
                return name;
            }
        };
    }

    private Listener add(Path name) {
        Listener listener = new Listener();
        listeners.add(listener, name);
        return listener;
    }

    private void signal(WatchEvent<?>... events) {
        listeners.signal(List.of(events), new Changes(), listener -> true);
    }

    @Test
    void onlyThoseOfTheNameAreSignalled() {
        List<Listener> all = new ArrayList<>();
        for (int i = 0; i < 1000; i++) {
            all.add(add(Path.of("n" + i)));
        }
        Listener folder = add(null);
        WatchEvent<Path> event = event(Path.of("n7"));
        signal(event, event(Path.of("other")));
        assertEquals(List.of(folder, all.get(7)), signalled);
        assertEquals(List.of(event), all.get(7).events);
        assertEquals(2, folder.events.size());
    }

    @Test
    void eventWithoutANameConcernsEveryone() {
        Listener one = add(Path.of("one"));
        Listener two = add(Path.of("two"));
        signal(event(null), event(Path.of("two")));
        assertEquals(1, one.events.size());
        assertEquals(2, two.events.size());
    }

    @Test
    void everyoneLosesTheFolder() {
        Listener one = add(Path.of("one"));
        Listener folder = add(null);
        listeners.lost(new Changes(), listener -> listener != folder);
        listeners.missed();
        assertEquals(1, one.lost);
        assertEquals(0, folder.lost);
        assertEquals(1, one.missed);
        assertEquals(1, folder.missed);
    }

    @Test
    void whoeverLeavesIsForgotten() {
        Path name = Path.of("name");
        Listener one = add(name);
        Listener two = add(name);
        Listener folder = add(null);
        listeners.remove(one, name);
        signal(event(name));
        assertEquals(List.of(folder, two), signalled);
        listeners.remove(two, name);
        assertFalse(listeners.isEmpty());
        listeners.remove(folder, null);
        assertTrue(listeners.isEmpty());
    }
}
