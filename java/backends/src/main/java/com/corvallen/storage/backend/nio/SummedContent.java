package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.util.zip.CRC32;

/** A content that is written once from beginning to end, with a checksum of what was written. */
final class SummedContent extends DelegatingContent {
    private static final int PORTION = 1 << 17;

    private final CRC32 given = new CRC32();
    private long end;

    SummedContent(Content content) {
        super(content);
    }

    /** Reads everything back and returns whether it is what was written. */
    synchronized boolean isSound() throws IOException {
        CRC32 read = new CRC32();
        ByteBuffer portion = ByteBuffer.allocate(PORTION);
        for (long position = 0; position < end; position += portion.limit()) {
            portion.clear();
            if (read(portion, position) < 0) {
                return false;
            }
            read.update(portion.flip().duplicate());
        }
        return size() == end && read.getValue() == given.getValue();
    }

    @Override
    public synchronized int write(ByteBuffer source, long position) throws IOException {
        if (position != end) {
            throw new IOException("not written in order");
        }
        given.update(source.duplicate());
        int remaining = source.remaining();
        while (source.hasRemaining()) {
            super.write(source, end + remaining - source.remaining());
        }
        end += remaining;
        return remaining;
    }
}
