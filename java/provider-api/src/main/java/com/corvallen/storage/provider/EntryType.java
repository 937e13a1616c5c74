package com.corvallen.storage.provider;

/** What an event is about. The names of the constants are the words that the native host is told. */
public enum EntryType {
    /** A file. */
    File,

    /** A folder. */
    Folder
}
