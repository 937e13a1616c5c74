package com.corvallen.storage.backend.nio;

import java.io.Closeable;
import java.io.IOException;
import java.io.RandomAccessFile;
import java.nio.ByteBuffer;
import java.nio.file.Path;

/**
 * A file on disk that stays open when threads that use it are interrupted. Java closes a channel as soon as a thread
 * that reads or writes through it is interrupted, and all other users would lose the file with its content.
 */
final class SteadyFile implements Content, Closeable {
    private final RandomAccessFile file;

    private SteadyFile(Path path, String mode) throws IOException {
        this.file = new RandomAccessFile(path.toFile(), mode);
    }

    /** Opens a file for reading. */
    static SteadyFile reading(Path path) throws IOException {
        return new SteadyFile(path, "r");
    }

    /** Opens a file for reading and writing. */
    static SteadyFile writing(Path path) throws IOException {
        return new SteadyFile(path, "rw");
    }

    @Override
    public synchronized int read(ByteBuffer target, long position) throws IOException {
        byte[] bytes = target.hasArray() ? target.array() : new byte[target.remaining()];
        int offset = target.hasArray() ? target.arrayOffset() + target.position() : 0;
        file.seek(position);
        int count = file.read(bytes, offset, target.remaining());
        if (count > 0 && target.hasArray()) {
            target.position(target.position() + count);
        } else if (count > 0) {
            target.put(bytes, 0, count);
        }
        return count;
    }

    @Override
    public synchronized int write(ByteBuffer source, long position) throws IOException {
        int count = source.remaining();
        file.seek(position);
        if (source.hasArray()) {
            file.write(source.array(), source.arrayOffset() + source.position(), count);
            source.position(source.limit());
        } else {
            byte[] bytes = new byte[count];
            source.get(bytes);
            file.write(bytes);
        }
        return count;
    }

    @Override
    public long size() throws IOException {
        return file.length();
    }

    @Override
    public synchronized void truncate(long size) throws IOException {
        if (size < file.length()) {
            file.setLength(size);
        }
    }

    @Override
    public void close() throws IOException {
        file.close();
    }
}
