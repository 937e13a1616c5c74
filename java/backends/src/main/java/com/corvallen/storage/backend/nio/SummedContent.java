package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.util.zip.CRC32;

/** A content that is written from its beginning to its end, and knows the checksum of what it was given. */
final class SummedContent implements Content {
    private static final int PORTION = 1 << 17;

    private final Content content;
    private final CRC32 given = new CRC32();
    private long end;

    SummedContent(Content content) {
        this.content = content;
    }

    /** Returns whether what can be read is what was written. */
    synchronized boolean isSound() throws IOException {
        CRC32 read = new CRC32();
        ByteBuffer portion = ByteBuffer.allocate(PORTION);
        for (long position = 0; position < end; position += portion.limit()) {
            portion.clear();
            if (content.read(portion, position) < 0) {
                return false;
            }
            read.update(portion.flip().duplicate());
        }
        return content.size() == end && read.getValue() == given.getValue();
    }

    @Override
    public synchronized int write(ByteBuffer source, long position) throws IOException {
        if (position != end) {
            throw new IOException("not written from its beginning to its end");
        }
        given.update(source.duplicate());
        int remaining = source.remaining();
        while (source.hasRemaining()) {
            content.write(source, end + remaining - source.remaining());
        }
        end += remaining;
        return remaining;
    }

    @Override
    public int read(ByteBuffer target, long position) throws IOException {
        return content.read(target, position);
    }

    @Override
    public long size() throws IOException {
        return content.size();
    }

    @Override
    public void truncate(long size) throws IOException {
        content.truncate(size);
    }
}
