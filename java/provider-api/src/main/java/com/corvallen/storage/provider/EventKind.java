package com.corvallen.storage.provider;

/**
 * What happened to a watched location. The native host receives the names of the constants.
 *
 * <p>"Self" is the watched location, "child" an entry below it.
 */
public enum EventKind {
    /** An entry was created below the watched folder, or moved into it. */
    ChildAdded,

    /** The content or the attributes of an entry below the watched folder changed. */
    ChildModified,

    /** An entry below the watched folder was removed, or moved away. */
    ChildRemoved,

    /** The content or the attributes of the watched file or folder changed. */
    SelfModified,

    /** The watched file or folder was removed, or moved away. */
    SelfRemoved
}
