package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;

/** The bytes of a file, read and written at positions. Safe on any thread. */
interface Content {
    /** Reads at least one byte, unless the buffer is full; returns -1 at the end and after it. */
    int read(ByteBuffer target, long position) throws IOException;

    /**
     * Writes at least one byte, unless the buffer is empty. A gap between the end and the position is filled with
     * zeros.
     */
    int write(ByteBuffer source, long position) throws IOException;

    long size() throws IOException;

    /** Cuts off the end; does nothing if the content is not longer. */
    void truncate(long size) throws IOException;
}
