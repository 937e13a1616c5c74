package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.EntryType;
import java.nio.file.attribute.BasicFileAttributes;

/** The state of a watched entry at a scan, to find out later whether it has changed. Immutable. */
final class EntryState {
    /** Its type for the host; a link has the type of its target. */
    final EntryType type;

    /** Whether it is a folder itself, not a link, so that there can be something below it. */
    final boolean isFolder;

    private final BasicFileAttributes attributes;

    /**
     * Makes a state.
     *
     * @param attributes those of the entry itself, links not followed
     * @param type its type for the host
     */
    EntryState(BasicFileAttributes attributes, EntryType type) {
        this.type = type;
        this.isFolder = attributes.isDirectory();
        this.attributes = attributes;
    }

    /** Tells whether both can be the same entry, changed or not: a file does not become a folder. */
    boolean isSameKind(EntryState other) {
        return isFolder == other.isFolder && type == other.type;
    }

    /** Tells whether both are the same entry and not one that took its place, as far as the file system can tell. */
    boolean isSameEntry(EntryState other) {
        return isSameKind(other) && FileIdentity.isSame(attributes, other.attributes);
    }

    /** Tells whether nothing has changed. A folder's size and time do not count: they change with its children. */
    boolean isUnchanged(EntryState other) {
        return isSameKind(other) && (isFolder || FileIdentity.isUnchanged(attributes, other.attributes));
    }
}
