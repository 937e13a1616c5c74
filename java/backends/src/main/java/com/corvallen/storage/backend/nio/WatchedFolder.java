package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardWatchEventKinds;
import java.nio.file.WatchEvent;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayDeque;
import java.util.Deque;
import java.util.HashMap;
import java.util.HashSet;
import java.util.LinkedHashMap;
import java.util.LinkedHashSet;
import java.util.List;
import java.util.Map;
import java.util.Objects;
import java.util.Set;

/**
 * A folder at or below a watched location, and the known state of its children. A signal only says where to scan. What
 * is reported is the difference between the known state and what is there, so nothing is reported twice and nothing
 * that stays is missed, however many signals are lost. An entry that appears and disappears between two scans is
 * reported if a signal names it.
 *
 * <p>Used under the watcher's lock.
 */
final class WatchedFolder implements Signals.Listener {
    private final Watch watch;
    private final StorageURI location;
    private final Path path;

    /** By their last names. */
    private final Map<Path, EntryState> children = new HashMap<>();

    private final Map<Path, WatchedFolder> folders = new HashMap<>();

    /** Children that could not be examined; they are tried again. */
    private final Set<Path> missed = new HashSet<>();

    /** Whether everything must be scanned, because a scan was not completed or has not begun. */
    private boolean incomplete = true;

    private boolean closed;

    WatchedFolder(Watch watch, StorageURI location, Path path) {
        this.watch = watch;
        this.location = location;
        this.path = path;
    }

    /**
     * Registers the folder for signals if it is not registered, and then scans it. In this order no change is missed.
     */
    void refresh(Changes changes) {
        if (closed) {
            return;
        }
        incomplete = true;
        watch.keys().register(this, path);
        incomplete = !compareAll(Map.of(), changes);
    }

    /** Scans all folders that have no watch key, and what could not be examined before. */
    void poll(Changes changes) {
        Deque<WatchedFolder> pending = new ArrayDeque<>();
        pending.push(this);
        while (!pending.isEmpty()) {
            WatchedFolder folder = pending.pop();
            pending.addAll(folder.folders.values());
            folder.pollItself(changes);
        }
    }

    private void pollItself(Changes changes) {
        if (incomplete || !watch.keys().isSignalled(this)) {
            refresh(changes);
        } else if (!closed && !missed.isEmpty()) {
            List.copyOf(missed).forEach(name -> compare(name, Set.of(), changes));
        }
    }

    /** Reports the removal of everything, deepest first, and stops watching. */
    void remove(Changes changes) {
        Deque<WatchedFolder> down = new ArrayDeque<>();
        down.push(this);
        while (!down.isEmpty()) {
            WatchedFolder folder = down.peek();
            if (!folder.folders.isEmpty()) {
                down.push(folder.folders.values().iterator().next());
                continue;
            }
            List.copyOf(folder.children.keySet()).forEach(name -> folder.gone(name, changes));
            folder.close();
            down.pop();
            if (!down.isEmpty()) {
                down.peek().gone(folder.path.getFileName(), changes);
            }
        }
    }

    /** Reports that a child is gone; if it is a folder, the removal of all that was in it was reported before. */
    private void gone(Path name, Changes changes) {
        report(EventKind.ChildRemoved, name, children.get(name), changes);
        children.remove(name);
        folders.remove(name);
    }

    void close() {
        Deque<WatchedFolder> pending = new ArrayDeque<>();
        pending.push(this);
        while (!pending.isEmpty()) {
            WatchedFolder folder = pending.pop();
            folder.closed = true;
            watch.keys().unregister(folder);
            pending.addAll(folder.folders.values());
            folder.folders.clear();
        }
    }

    @Override
    public void signalled(List<WatchEvent<?>> events, Changes changes) {
        boolean before = incomplete;
        incomplete = true;
        Map<Path, Set<WatchEvent.Kind<?>>> kinds = new LinkedHashMap<>();
        for (WatchEvent<?> event : events) {
            kinds.computeIfAbsent((Path) event.context(), name -> new HashSet<>()).add(event.kind());
        }
        if (kinds.containsKey(/* overflow= */ null)) {
            incomplete = !compareAll(kinds, changes);
        } else {
            kinds.forEach((name, of) -> compare(name, of, changes));
            incomplete = before;
        }
    }

    @Override
    public void missed() {
        incomplete = true;
    }

    @Override
    public void lost(Changes changes) {
        watch.check(/* modified= */ false, changes);
    }

    /** Compares everything known and everything there; returns false if the folder could not be read. */
    private boolean compareAll(Map<Path, Set<WatchEvent.Kind<?>>> kinds, Changes changes) {
        Set<Path> names = new LinkedHashSet<>(children.keySet());
        try (DirectoryStream<Path> stream = Files.newDirectoryStream(Names.asFolder(path))) {
            stream.forEach(child -> names.add(child.getFileName()));
        } catch (IOException | RuntimeException e) {
            // What cannot be read is not gone. If the folder itself is gone, the scan of its parent reports it.
            watch.failed(path, e);
            return false;
        }
        names.forEach(name -> compare(name, kinds.getOrDefault(name, Set.of()), changes));
        return true;
    }

    private void compare(Path name, Set<WatchEvent.Kind<?>> kinds, Changes changes) {
        EntryState now;
        try {
            now = stateOf(name);
        } catch (ProviderException e) {
            watch.failed(path.resolve(name), e);
            return;
        } catch (IOException | RuntimeException e) {
            missed.add(name);
            watch.failed(path.resolve(name), e);
            return;
        }
        missed.remove(name);
        settle(name, children.get(name), now, kinds, changes);
    }

    /**
     * Updates the known state of a child to the present one, and reports the difference; null means that it is not
     * there.
     */
    private void settle(
            Path name, EntryState before, EntryState now, Set<WatchEvent.Kind<?>> kinds, Changes changes) {
        if (before != null && now != null && before.isSameKind(now) && !isAnother(before, now, kinds)) {
            stayed(name, now, kinds.contains(StandardWatchEventKinds.ENTRY_MODIFY), changes);
            return;
        }
        if (before != null) {
            removed(name, changes);
        }
        if (now != null) {
            added(name, now, changes);
        }
        if (before == null && now == null && kinds.contains(StandardWatchEventKinds.ENTRY_DELETE)) {
            passed(name, changes);
        }
    }

    /**
     * Tells whether something was removed or replaced and is there again. This is reported even if nothing seems to
     * have changed, because a host that listed the folder in between has not seen the entry.
     */
    private static boolean isAnother(EntryState before, EntryState now, Set<WatchEvent.Kind<?>> kinds) {
        boolean replaced = kinds.contains(StandardWatchEventKinds.ENTRY_CREATE) && now.isFolder;
        return kinds.contains(StandardWatchEventKinds.ENTRY_DELETE) || replaced && !before.isSameEntry(now);
    }

    /**
     * Reports an entry that came and went between two scans, because a host may have listed it. Its type is not known.
     */
    private void passed(Path name, Changes changes) {
        StorageURI child = nameable(name);
        if (child != null) {
            changes.add(watch, EventKind.ChildAdded, child, EntryType.File);
            changes.add(watch, EventKind.ChildRemoved, child, EntryType.File);
        }
    }

    /** Returns the state of a child, null if it is not there. Throws if the host has no name for it. */
    private EntryState stateOf(Path name) throws IOException, ProviderException {
        BasicFileAttributes attributes = EntryKind.ownAttributesOf(path.resolve(name));
        if (attributes == null) {
            return null;
        }
        StorageURI child = location.resolve(Names.of(name));
        boolean isFolder = attributes.isSymbolicLink() ? watch.leadsToFolder(child) : attributes.isDirectory();
        return new EntryState(attributes, isFolder ? EntryType.Folder : EntryType.File);
    }

    /** Reports a new child. A folder is scanned later, because it may hold folders again. */
    private void added(Path name, EntryState now, Changes changes) {
        report(EventKind.ChildAdded, name, now, changes);
        children.put(name, now);
        if (now.isFolder) {
            changes.add(folderOf(name));
        }
    }

    private WatchedFolder folderOf(Path name) {
        return folders.computeIfAbsent(
                name, unused -> new WatchedFolder(watch, locationOf(name), path.resolve(name)));
    }

    private void removed(Path name, Changes changes) {
        WatchedFolder folder = folders.get(name);
        if (folder != null) {
            folder.remove(changes);
        }
        gone(name, changes);
    }

    private void stayed(Path name, EntryState now, boolean modified, Changes changes) {
        EntryState before = children.get(name);
        if (modified || !before.isUnchanged(now)) {
            report(EventKind.ChildModified, name, now, changes);
        }
        children.put(name, now);
        if (now.isFolder && (!before.isSameEntry(now) || watch.keys().isLost(folderOf(name)))) {
            changes.add(folderOf(name));
        }
    }

    private void report(EventKind kind, Path name, EntryState state, Changes changes) {
        changes.add(watch, kind, locationOf(name), state.type);
    }

    /** Returns the location of a known child, which had a name before. */
    private StorageURI locationOf(Path name) {
        return Objects.requireNonNull(nameable(name));
    }

    /** Returns the location of a child, or null if no location can name it; such a child is never reported. */
    private StorageURI nameable(Path name) {
        try {
            return location.resolve(Names.of(name));
        } catch (ProviderException e) {
            return null;
        }
    }
}
