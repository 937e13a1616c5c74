package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.SeekableByteChannel;

/**
 * An open file. The host's buffers are passed straight to the file system, so nothing is copied for files on disk. Safe
 * on any thread: calls that overlap run one after the other.
 */
final class NioChannel implements ProviderChannel {
    private final StorageURI location;
    private final OpenFile file;
    private final SeekableByteChannel channel;
    private final boolean writable;

    /** A position that is beyond what the file system can express; negative if the channel is at its real position. */
    private long beyond = -1;

    NioChannel(StorageURI location, OpenFile file, boolean writable) {
        this.location = location;
        this.file = file;
        this.channel = file.channel;
        this.writable = writable;
    }

    @Override
    public synchronized int read(ByteBuffer target) throws ProviderException {
        requireOpen();
        return Failures.translated(location, () -> readHere(target));
    }

    @Override
    public synchronized int write(ByteBuffer source) throws ProviderException {
        requireOpen();
        if (!writable) {
            throw Failures.of(ErrorCode.ACCESS_DENIED, location, "is open for reading only");
        }
        return Failures.translated(location, () -> writeHere(source));
    }

    @Override
    public synchronized long position() throws ProviderException {
        requireOpen();
        return Failures.translated(location, () -> beyond < 0 ? channel.position() : beyond);
    }

    @Override
    public synchronized void position(long position) throws ProviderException {
        requireOpen();
        if (position < 0) {
            throw Failures.of(ErrorCode.INVALID_LOCATION, location, "has no position " + position);
        }
        Failures.translated(location, () -> moveTo(position));
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

    private void moveTo(long position) throws IOException {
        beyond = -1;
        try {
            channel.position(position);
        } catch (IOException | IllegalArgumentException e) {
            if (e instanceof IOException && ErrorTable.codeOf(e) != ErrorCode.INVALID_LOCATION) {
                throw e;
            }
            beyond = position;
        }
    }

    private int readHere(ByteBuffer target) throws IOException {
        if (beyond >= 0) {
            return endOf(target);
        }
        try {
            return channel.read(target);
        } catch (IOException e) {
            if (cannotReach(target) && channel.position() >= channel.size()) {
                return endOf(target);
            }
            throw e;
        }
    }

    private static int endOf(ByteBuffer target) {
        return target.hasRemaining() ? -1 : 0;
    }

    private int writeHere(ByteBuffer source) throws IOException, ProviderException {
        if (beyond >= 0) {
            if (source.hasRemaining()) {
                throw tooLong();
            }
            return 0;
        }
        try {
            return channel.write(source);
        } catch (IOException | RuntimeException e) {
            if (cannotReach(source)) {
                throw tooLong();
            }
            throw e;
        }
    }

    /**
     * Tells whether a buffer would end beyond the last possible position; the system then reports an invalid argument.
     */
    private boolean cannotReach(ByteBuffer buffer) throws IOException {
        return channel.isOpen() && channel.position() > Long.MAX_VALUE - buffer.remaining();
    }

    private ProviderException tooLong() {
        return Failures.of(ErrorCode.STORAGE_FULL, location, "cannot be that long here");
    }

    private void requireOpen() throws ProviderException {
        if (!channel.isOpen()) {
            throw Failures.of(ErrorCode.UNAVAILABLE, location, "has been closed");
        }
    }
}
