package com.corvallen.storage.provider;

/** What the entry of an event is. The native host receives the names of the constants. */
public enum EntryType {
    /** A file. */
    File,

    /** A folder. */
    Folder
}
