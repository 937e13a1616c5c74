package com.corvallen.bench;

import com.corvallen.storage.provider.ProviderChannel;
import java.nio.ByteBuffer;

/** A file without an end, in memory: moves the bytes it is asked for, and keeps neither them nor a position. */
final class IdleChannel implements ProviderChannel {
    private static final int LARGEST = 1 << 20;
    private static final byte[] DATA = new byte[LARGEST];
    private static final byte[] TAKEN = new byte[LARGEST];

    @Override
    public int read(ByteBuffer target) {
        int count = Math.min(target.remaining(), LARGEST);
        target.put(DATA, 0, count);
        return count;
    }

    @Override
    public int write(ByteBuffer source) {
        int count = Math.min(source.remaining(), LARGEST);
        source.get(TAKEN, 0, count);
        return count;
    }

    @Override
    public long position() {
        return 0;
    }

    @Override
    public void position(long position) {}

    @Override
    public long size() {
        return LARGEST;
    }

    @Override
    public void close() {}
}
