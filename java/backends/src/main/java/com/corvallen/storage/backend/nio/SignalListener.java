package com.corvallen.storage.backend.nio;

import java.nio.file.WatchEvent;
import java.util.List;

/** Whoever looks at a folder when it is signalled. Called on the watcher's thread, under its lock. */
interface SignalListener {
    /** Something has happened in the folder. */
    void signalled(List<WatchEvent<?>> events, Changes changes);

    /** Something has happened, and to look at it has failed. */
    void missed();

    /** The folder is not signalled any more: it is gone, or its file system is. */
    void lost(Changes changes);
}
