package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.nio.ByteBuffer;
import java.nio.channels.SeekableByteChannel;

/**
 * An open file. The host's buffers go straight to the file system, which for files on disk means that nothing is copied.
 * Safe on any thread: calls that overlap run one after the other.
 */
final class NioChannel implements ProviderChannel {
    private final StorageURI location;
    private final OpenFile file;
    private final SeekableByteChannel channel;
    private final boolean writable;

    NioChannel(StorageURI location, OpenFile file, boolean writable) {
        this.location = location;
        this.file = file;
        this.channel = file.channel;
        this.writable = writable;
    }

    @Override
    public synchronized int read(ByteBuffer target) throws ProviderException {
        requireOpen();
        return Failures.translated(location, () -> channel.read(target));
    }

    @Override
    public synchronized int write(ByteBuffer source) throws ProviderException {
        requireOpen();
        if (!writable) {
            throw new ProviderException(ErrorCode.ACCESS_DENIED, location, location + " is open for reading only");
        }
        return Failures.translated(location, () -> channel.write(source));
    }

    @Override
    public synchronized long position() throws ProviderException {
        requireOpen();
        return Failures.translated(location, () -> channel.position());
    }

    @Override
    public synchronized void position(long position) throws ProviderException {
        requireOpen();
        if (position < 0) {
            throw new ProviderException(
                    ErrorCode.INVALID_LOCATION, location, location + " has no position " + position);
        }
        Failures.translated(location, () -> channel.position(position));
    }

    @Override
    public synchronized long size() throws ProviderException {
        requireOpen();
        return Failures.translated(location, () -> channel.size());
    }

    @Override
    public synchronized void close() throws ProviderException {
        Failures.translated(location, () -> file.close());
    }

    private void requireOpen() throws ProviderException {
        if (!channel.isOpen()) {
            throw new ProviderException(ErrorCode.UNAVAILABLE, location, location + " has been closed");
        }
    }
}
