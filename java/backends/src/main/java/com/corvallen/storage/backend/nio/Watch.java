package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.NoSuchFileException;
import java.nio.file.NotDirectoryException;
import java.nio.file.Path;
import java.nio.file.StandardWatchEventKinds;
import java.nio.file.WatchEvent;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayList;
import java.util.HashSet;
import java.util.List;
import java.util.Set;

/**
 * One watched location: a file, or a folder with everything below it. It listens to its parent folder for changes of
 * the location itself.
 *
 * <p>Used under the watcher's lock, except {@link #publish}, {@link #use} and {@link #stop}.
 */
final class Watch implements Signals.Listener {
    private final Watcher watcher;
    private final Mount mount;
    private final Path path;
    private final StorageURI location;

    /** Mount and names, because one location can be written in several ways. */
    private final List<String> key;

    /** Null for a file. */
    private final WatchedFolder content;

    private final Set<Path> failed = new HashSet<>();
    private EntryState self;
    private volatile EventPublisher publisher;
    private volatile boolean stopped;
    private boolean ended;

    Watch(Watcher watcher, Found found, Mount mount, EventPublisher publisher)
            throws IOException, ProviderException {
        this.watcher = watcher;
        this.mount = mount;
        this.path = found.path.toRealPath();
        this.location = found.location;
        this.key = keyOf(location);
        this.publisher = publisher;
        this.content = found.attributes.isDirectory() ? new WatchedFolder(this, location, path) : null;
        this.self = new EntryState(found.attributes, content == null ? EntryType.File : EntryType.Folder);
    }

    static List<String> keyOf(StorageURI location) throws ProviderException {
        List<String> key = new ArrayList<>(location.getSegments());
        key.add(0, location.getMountName());
        return key;
    }

    List<String> key() {
        return key;
    }

    KeyRing keys() {
        return watcher.keys();
    }

    boolean leadsToFolder(StorageURI link) {
        return mount.leadsToFolder(link);
    }

    /** Records what is there without reporting it. The parent of a mount's root is outside and is not watched. */
    void open() {
        if (!path.equals(mount.root())) {
            keys().register(this, path.getParent(), path.getFileName());
        }
        Changes unreported = new Changes();
        if (content == null) {
            check(/* modified= */ false, unreported);
            return;
        }
        for (WatchedFolder folder = content; folder != null; folder = unreported.nextFolder()) {
            folder.refresh(unreported);
        }
    }

    void close() {
        keys().unregister(this);
        if (content != null) {
            content.close();
        }
    }

    /** Tells whether two watch the same file or folder; a location may lead elsewhere by now. */
    boolean isOfTheSame(Watch other) {
        return path.equals(other.path) && self.isSameKind(other.self);
    }

    /** Sends all further events to the other watch's publisher. */
    void use(Watch other) {
        publisher = other.publisher;
    }

    /** Sends no further events. */
    void stop() {
        stopped = true;
    }

    @Override
    public void signalled(List<WatchEvent<?>> events, Changes changes) {
        boolean concerned = false;
        boolean modified = false;
        for (WatchEvent<?> event : events) {
            boolean isSelf = path.getFileName().equals(event.context());
            concerned |= isSelf || event.context() == null;
            modified |= isSelf && event.kind() == StandardWatchEventKinds.ENTRY_MODIFY;
        }
        if (concerned) {
            check(modified, changes);
        }
    }

    /** Needs no note: every location is scanned again within moments. */
    @Override
    public void missed() {
        return;
    }

    @Override
    public void lost(Changes changes) {
        check(/* modified= */ false, changes);
    }

    /** Checks whether the location itself still exists and is unchanged. */
    void check(boolean modified, Changes changes) {
        BasicFileAttributes attributes;
        try {
            attributes = EntryKind.ownAttributesOf(path);
        } catch (IOException | RuntimeException e) {
            failed(path, e);
            return;
        }
        if (attributes == null || attributes.isDirectory() != self.isFolder) {
            end(changes);
            return;
        }
        EntryState before = self;
        self = new EntryState(attributes, before.type);
        if (modified || !before.isUnchanged(self)) {
            changes.add(this, EventKind.SelfModified, location, self.type);
        }
        if (content != null && (!before.isSameEntry(self) || keys().isLost(content))) {
            changes.add(content);
        }
    }

    /** Scans what has no watch key. */
    void poll(Changes changes) {
        check(/* modified= */ false, changes);
        if (content != null && !ended) {
            content.poll(changes);
        }
    }

    private void end(Changes changes) {
        ended = true;
        if (content != null) {
            content.remove(changes);
        }
        changes.add(this, EventKind.SelfRemoved, location, self.type);
        watcher.ended(this);
    }

    /**
     * Logs a path that cannot be scanned, once for each path; its last known state is kept. A path that has disappeared
     * is not logged: the scan of its folder finds that out.
     */
    void failed(Path where, Throwable why) {
        boolean isGone = why instanceof NoSuchFileException || why instanceof NotDirectoryException;
        if (!isGone && failed.add(where)) {
            Log.warning("Cannot scan for changes of " + where, why);
        }
    }

    /** Sends an event to the host. Called without the lock. An exception from the host does not end the watch. */
    void publish(EventKind kind, StorageURI changed, EntryType type) {
        if (stopped) {
            return;
        }
        try {
            publisher.publish(kind, location, changed, type, /* originId= */ null);
        } catch (RuntimeException | Error e) {
            Log.error("Cannot publish " + kind + " of " + changed, e);
        }
    }
}
