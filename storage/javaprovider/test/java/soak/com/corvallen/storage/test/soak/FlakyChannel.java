package com.corvallen.storage.test.soak;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.ByteBuffer;

/** A channel over the bytes of one file in memory, which fails at random and moves fewer bytes than it might. */
final class FlakyChannel implements ProviderChannel {
    private final StorageURI location;
    private final byte[] content;
    private long position;

    FlakyChannel(StorageURI location, byte[] content) {
        this.location = location;
        this.content = content;
    }

    @Override
    public synchronized int read(ByteBuffer target) throws ProviderException {
        Chance.mayFail(location);
        int count = movable(target);
        if (count <= 0) {
            return -1;
        }
        target.put(content, (int) position, count);
        position += count;
        return count;
    }

    @Override
    public synchronized int write(ByteBuffer source) throws ProviderException {
        Chance.mayFail(location);
        int count = movable(source);
        if (count <= 0) {
            throw new ProviderException(ErrorCode.STORAGE_FULL, location);
        }
        source.get(content, (int) position, count);
        position += count;
        return count;
    }

    private int movable(ByteBuffer buffer) {
        long left = Math.min(buffer.remaining(), content.length - position);
        return left <= 1 ? (int) left : 1 + Chance.below((int) left);
    }

    @Override
    public synchronized long position() {
        return position;
    }

    @Override
    public synchronized void position(long newPosition) throws ProviderException {
        Chance.mayFail(location);
        position = Math.max(0, newPosition);
    }

    @Override
    public long size() throws ProviderException {
        Chance.mayFail(location);
        return content.length;
    }

    @Override
    public void close() throws ProviderException {
        Chance.mayFail(location);
    }
}
