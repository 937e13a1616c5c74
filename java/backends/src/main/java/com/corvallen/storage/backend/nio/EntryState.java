package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.EntryType;
import java.nio.file.attribute.BasicFileAttributes;

/** What is remembered of an entry, to tell later whether it has changed. Immutable. */
final class EntryState {
    /** What it is to the host; a link is what it leads to. */
    final EntryType type;

    /** Whether it is a folder itself and no link, so that there is something below it. */
    final boolean isFolder;

    private final BasicFileAttributes attributes;

    /**
     * Remembers an entry.
     *
     * @param attributes those of the entry itself, links not followed
     * @param type what it counts as
     */
    EntryState(BasicFileAttributes attributes, EntryType type) {
        this.type = type;
        this.isFolder = attributes.isDirectory();
        this.attributes = attributes;
    }

    /** Tells whether one can be the other, changed or not: a file does not become a folder. */
    boolean isSameKind(EntryState other) {
        return isFolder == other.isFolder && type == other.type;
    }

    /** Tells an entry from another one that has taken its place, where the file system can. */
    boolean isSameEntry(EntryState other) {
        return isSameKind(other) && FileIdentity.isSame(attributes, other.attributes);
    }

    /** Tells whether nothing has changed. A folder's size and time change with its children, who tell themselves. */
    boolean isUnchanged(EntryState other) {
        return isSameKind(other) && (isFolder || FileIdentity.isUnchanged(attributes, other.attributes));
    }
}
