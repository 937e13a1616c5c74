package com.corvallen.storage.backend.nio;

import java.io.InterruptedIOException;

/** Ends what takes long when the thread is interrupted. The thread stays interrupted, so its caller sees it. */
final class Interruption {
    private Interruption() {}

    /** What a thread is to bring to its end though it was interrupted; it stays interrupted afterwards. */
    static final class PutOff {
        private final boolean wasInterrupted = Thread.interrupted();

        void end() {
            if (wasInterrupted) {
                Thread.currentThread().interrupt();
            }
        }
    }

    /** Called between two entries or two portions of a file. */
    static void check() throws InterruptedIOException {
        if (Thread.currentThread().isInterrupted()) {
            throw failure();
        }
    }

    static InterruptedIOException failure() {
        return new InterruptedIOException("interrupted");
    }
}
