package com.corvallen.storage.backend.nio;

import java.lang.System.Logger.Level;

/** Where the watcher's thread reports what goes wrong. A log that fails does not end the thread. */
final class WatchLog {
    private WatchLog() {}

    static void report(Level level, String what, Throwable why) {
        try {
            System.getLogger(NioProvider.class.getName()).log(level, what, why);
        } catch (RuntimeException | Error e) {
            // There is no other place to say it, and the host's events matter more than the log.
            return;
        }
    }
}
