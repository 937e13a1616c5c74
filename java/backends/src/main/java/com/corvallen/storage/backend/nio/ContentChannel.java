package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.MappedByteBuffer;
import java.nio.channels.ClosedChannelException;
import java.nio.channels.FileChannel;
import java.nio.channels.FileLock;
import java.nio.channels.ReadableByteChannel;
import java.nio.channels.WritableByteChannel;

/**
 * A channel over a {@link Content}, which stays open when the channel is closed. Calls that overlap run one after the
 * other.
 */
final class ContentChannel extends FileChannel {
    private static final int PORTION = 1 << 16;

    private final Content content;
    private long position;

    ContentChannel(Content content) {
        super();
        this.content = content;
    }

    @Override
    public synchronized int read(ByteBuffer target) throws IOException {
        int count = read(target, position);
        position += Math.max(0, count);
        return count;
    }

    @Override
    public synchronized long read(ByteBuffer[] targets, int offset, int length) throws IOException {
        long sum = 0;
        for (int index = offset; index < offset + length; index++) {
            while (targets[index].hasRemaining()) {
                int count = read(targets[index]);
                if (count < 0) {
                    return sum == 0 ? -1 : sum;
                }
                sum += count;
            }
        }
        return sum;
    }

    @Override
    public int read(ByteBuffer target, long at) throws IOException {
        requireOpen();
        return target.hasRemaining() ? content.read(target, at) : 0;
    }

    @Override
    public synchronized int write(ByteBuffer source) throws IOException {
        int count = write(source, position);
        position += count;
        return count;
    }

    @Override
    public synchronized long write(ByteBuffer[] sources, int offset, int length) throws IOException {
        long sum = 0;
        for (int index = offset; index < offset + length; index++) {
            while (sources[index].hasRemaining()) {
                sum += write(sources[index]);
            }
        }
        return sum;
    }

    @Override
    public int write(ByteBuffer source, long at) throws IOException {
        requireOpen();
        return content.write(source, at);
    }

    @Override
    public synchronized long position() throws IOException {
        requireOpen();
        return position;
    }

    @Override
    public synchronized FileChannel position(long newPosition) throws IOException {
        requireOpen();
        if (newPosition < 0) {
            throw new IllegalArgumentException("negative position");
        }
        position = newPosition;
        return this;
    }

    @Override
    public long size() throws IOException {
        requireOpen();
        return content.size();
    }

    @Override
    public synchronized FileChannel truncate(long size) throws IOException {
        requireOpen();
        content.truncate(size);
        position = Math.min(position, size);
        return this;
    }

    /** Does nothing: the content does not outlive the process. */
    @Override
    public void force(boolean metaData) throws IOException {
        requireOpen();
    }

    @Override
    public long transferTo(long from, long count, WritableByteChannel target) throws IOException {
        ByteBuffer portion = ByteBuffer.allocate((int) Math.min(PORTION, count));
        int read = read(portion, from);
        return read <= 0 ? 0 : target.write(portion.flip());
    }

    @Override
    public long transferFrom(ReadableByteChannel source, long to, long count) throws IOException {
        ByteBuffer portion = ByteBuffer.allocate((int) Math.min(PORTION, count));
        source.read(portion);
        portion.flip();
        long written = 0;
        while (portion.hasRemaining()) {
            written += write(portion, to + written);
        }
        return written;
    }

    @Override
    public MappedByteBuffer map(MapMode mode, long from, long size) {
        throw new UnsupportedOperationException("not a file on disk");
    }

    @Override
    public FileLock lock(long from, long size, boolean shared) {
        throw new UnsupportedOperationException("not a file on disk");
    }

    @Override
    public FileLock tryLock(long from, long size, boolean shared) {
        throw new UnsupportedOperationException("not a file on disk");
    }

    @Override
    protected void implCloseChannel() {
        // The owner of the content closes it.
    }

    private void requireOpen() throws ClosedChannelException {
        if (!isOpen()) {
            throw new ClosedChannelException();
        }
    }
}
