package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.LinkOption;
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
 * A folder at or below a watched location, and what is known of its children. A signal only says where to look: what is
 * told is the difference between what was known and what is there, so nothing is told twice and nothing that stays is
 * missed, however many signals were lost. What comes and goes between two looks is told if a signal names it.
 *
 * <p>Used under the watcher's lock.
 */
final class WatchedFolder implements SignalListener {
    private final Watch watch;
    private final StorageURI location;
    private final Path path;

    /** By their names alone. */
    private final Map<Path, EntryState> children = new HashMap<>();

    private final Map<Path, WatchedFolder> folders = new HashMap<>();

    /** What could not be looked at; it is looked at again. */
    private final Set<Path> missed = new HashSet<>();

    /** Whether all of it is to be looked at, because a look has not come to its end, or has not begun. */
    private boolean behind = true;

    private boolean closed;

    WatchedFolder(Watch watch, StorageURI location, Path path) {
        this.watch = watch;
        this.location = location;
        this.path = path;
    }

    /** Has the folder signalled, if it is not, and then compares; in this order nothing falls between the two. */
    void refresh(Changes changes) {
        if (closed) {
            return;
        }
        behind = true;
        watch.keys().register(this, path);
        behind = !compareAll(Map.of(), changes);
    }

    /** Looks at all folders that nothing signals, and at what could not be looked at before. */
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
        if (behind || !watch.keys().isSignalled(this)) {
            refresh(changes);
        } else if (!closed && !missed.isEmpty()) {
            List.copyOf(missed).forEach(name -> compare(name, Set.of(), changes));
        }
    }

    /** Tells that everything is gone, the deepest first, and watches no more. */
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
        tell(EventKind.ChildRemoved, name, children.get(name), changes);
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
        boolean before = behind;
        behind = true;
        Map<Path, Set<WatchEvent.Kind<?>>> kinds = new LinkedHashMap<>();
        for (WatchEvent<?> event : events) {
            kinds.computeIfAbsent((Path) event.context(), name -> new HashSet<>()).add(event.kind());
        }
        if (kinds.containsKey(/* overflow= */ null)) {
            behind = !compareAll(kinds, changes);
        } else {
            kinds.forEach((name, of) -> compare(name, of, changes));
            behind = before;
        }
    }

    @Override
    public void missed() {
        behind = true;
    }

    @Override
    public void lost(Changes changes) {
        watch.check(/* modified= */ false, changes);
    }

    /** Looks at everything that was known and everything that is there; returns whether that could be read. */
    private boolean compareAll(Map<Path, Set<WatchEvent.Kind<?>>> kinds, Changes changes) {
        Set<Path> names = new LinkedHashSet<>(children.keySet());
        try (DirectoryStream<Path> stream = Files.newDirectoryStream(Names.asFolder(path))) {
            stream.forEach(child -> names.add(child.getFileName()));
        } catch (IOException | RuntimeException e) {
            // What cannot be read is not gone. If the folder itself is, whoever watches the one above finds out.
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

    /** Updates what is known of a child to what is there, and reports the difference; null stands for nothing. */
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
     * Tells whether something was removed, or replaced, and is there again. That is told although nothing seems to have
     * changed, since a host that has listed the folder in between has not seen it.
     */
    private static boolean isAnother(EntryState before, EntryState now, Set<WatchEvent.Kind<?>> kinds) {
        boolean replaced = kinds.contains(StandardWatchEventKinds.ENTRY_CREATE) && now.isFolder;
        return kinds.contains(StandardWatchEventKinds.ENTRY_DELETE) || replaced && !before.isSameEntry(now);
    }

    /** A host may have listed what came and went between two looks. What it was is not known any more. */
    private void passed(Path name, Changes changes) {
        StorageURI child = nameable(name);
        if (child != null) {
            changes.add(watch, EventKind.ChildAdded, child, EntryType.File);
            changes.add(watch, EventKind.ChildRemoved, child, EntryType.File);
        }
    }

    /** Returns null for what is not there. Throws for what the host has no name for. */
    private EntryState stateOf(Path name) throws IOException, ProviderException {
        BasicFileAttributes attributes = EntryKind.attributesOf(path.resolve(name), LinkOption.NOFOLLOW_LINKS);
        if (attributes == null) {
            return null;
        }
        StorageURI child = location.resolve(Names.of(name));
        boolean isFolder = attributes.isSymbolicLink() ? watch.leadsToFolder(child) : attributes.isDirectory();
        return new EntryState(attributes, isFolder ? EntryType.Folder : EntryType.File);
    }

    /** A folder is looked into later, as what is found there may hold folders again. */
    private void added(Path name, EntryState now, Changes changes) {
        tell(EventKind.ChildAdded, name, now, changes);
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
            tell(EventKind.ChildModified, name, now, changes);
        }
        children.put(name, now);
        if (now.isFolder && (!before.isSameEntry(now) || watch.keys().isLost(folderOf(name)))) {
            changes.add(folderOf(name));
        }
    }

    private void tell(EventKind kind, Path name, EntryState state, Changes changes) {
        changes.add(watch, kind, locationOf(name), state.type);
    }

    /** Of what is known, which has been named before. */
    private StorageURI locationOf(Path name) {
        return Objects.requireNonNull(nameable(name));
    }

    /** Returns null for what no location can name, which is never told of. */
    private StorageURI nameable(Path name) {
        try {
            return location.resolve(Names.of(name));
        } catch (ProviderException e) {
            return null;
        }
    }
}
