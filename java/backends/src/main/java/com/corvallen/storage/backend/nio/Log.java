package com.corvallen.storage.backend.nio;

import java.lang.System.Logger.Level;

/** Logs failures that no caller can be given. If the log itself fails, that is ignored: events must go on. */
final class Log {
    private Log() {}

    static void error(String what, Throwable why) {
        log(Level.ERROR, what, why);
    }

    static void warning(String what, Throwable why) {
        log(Level.WARNING, what, why);
    }

    private static void log(Level level, String what, Throwable why) {
        try {
            System.getLogger(NioProvider.class.getName()).log(level, what, why);
        } catch (RuntimeException | Error e) {
            return;
        }
    }
}
