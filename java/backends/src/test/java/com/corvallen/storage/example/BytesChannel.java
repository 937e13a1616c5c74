package com.corvallen.storage.example;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.ByteBuffer;

/** Reads bytes that are all in memory. */
final class BytesChannel implements ProviderChannel {
    private final StorageURI location;
    private final byte[] content;
    private long position;
    private boolean closed;

    BytesChannel(StorageURI location, byte[] content) {
        this.location = location;
        this.content = content;
    }

    @Override
    public synchronized int read(ByteBuffer target) throws ProviderException {
        requireOpen();
        if (position >= content.length) {
            return -1;
        }
        int count = (int) Math.min(target.remaining(), content.length - position);
        target.put(content, (int) position, count);
        position += count;
        return count;
    }

    @Override
    public synchronized int write(ByteBuffer source) throws ProviderException {
        requireOpen();
        throw new ProviderException(ErrorCode.ACCESS_DENIED, location);
    }

    @Override
    public synchronized long position() throws ProviderException {
        requireOpen();
        return position;
    }

    @Override
    public synchronized void position(long newPosition) throws ProviderException {
        requireOpen();
        if (newPosition < 0) {
            throw new ProviderException(ErrorCode.INVALID_LOCATION, location);
        }
        position = newPosition;
    }

    @Override
    public synchronized long size() throws ProviderException {
        requireOpen();
        return content.length;
    }

    @Override
    public synchronized void close() {
        closed = true;
    }

    private void requireOpen() throws ProviderException {
        if (closed) {
            throw new ProviderException(ErrorCode.UNAVAILABLE, location);
        }
    }
}
