package com.corvallen.storage.backend.nio;

import java.io.InterruptedIOException;

/** Ends long work when its thread is interrupted. The thread stays interrupted, so its caller sees it. */
final class Interruption {
    private Interruption() {}

    /** Hides an interruption from work that must be finished; end() restores it. */
    static final class PutOff {
        private final boolean wasInterrupted = Thread.interrupted();

        void end() {
            if (wasInterrupted) {
                Thread.currentThread().interrupt();
            }
        }
    }

    /** Called between entries and between portions of a file. */
    static void check() throws InterruptedIOException {
        if (Thread.currentThread().isInterrupted()) {
            throw failure();
        }
    }

    static InterruptedIOException failure() {
        return new InterruptedIOException("interrupted");
    }
}
