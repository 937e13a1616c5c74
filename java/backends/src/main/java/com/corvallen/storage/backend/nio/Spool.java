package com.corvallen.storage.backend.nio;

import java.io.Closeable;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.util.BitSet;

/**
 * Room for many files in one file on disk. That file has no name, so the system removes it when the process ends, even
 * if it is killed. Room is given out in blocks. The file is created when the first block is written. Safe on any
 * thread.
 */
final class Spool implements Closeable {
    static final int BLOCK = 1 << 13;

    /** Opens the file that holds the blocks. */
    interface Opener {
        SteadyFile open() throws IOException;
    }

    private final Opener opener;
    private final BitSet used = new BitSet();

    /** All blocks before it are used. */
    private int firstFree;

    /** The number of blocks that were ever used; the file may hold old bytes there. */
    private int touched;

    private SteadyFile file;
    private boolean closed;

    Spool(Opener opener) {
        this.opener = opener;
    }

    /** Returns a block of zeros: the first free one, so that files mostly lie in one piece. */
    int allocate() throws IOException {
        int block;
        boolean fresh;
        synchronized (this) {
            block = used.nextClearBit(firstFree);
            firstFree = block + 1;
            fresh = block >= touched;
            used.set(block);
            touched = Math.max(touched, block + 1);
        }
        try {
            if (!fresh) {
                write(block, 0, ByteBuffer.allocate(BLOCK));
            }
            return block;
        } catch (IOException e) {
            free(block);
            throw e;
        }
    }

    synchronized void free(int block) {
        used.clear(block);
        firstFree = Math.min(firstFree, block);
    }

    /** Reads from an offset in a block, and on into the blocks that follow. */
    void read(int block, int offset, ByteBuffer target) throws IOException {
        long position = (long) block * BLOCK + offset;
        while (target.hasRemaining()) {
            int count = file().read(target, position);
            if (count < 0) {
                // The file ends before: nothing was written here.
                target.put(new byte[target.remaining()]);
                return;
            }
            position += count;
        }
    }

    /** Writes everything, on into the blocks that follow. */
    void write(int block, int offset, ByteBuffer source) throws IOException {
        long position = (long) block * BLOCK + offset;
        while (source.hasRemaining()) {
            position += file().write(source, position);
        }
    }

    private synchronized SteadyFile file() throws IOException {
        if (closed) {
            throw new IOException("the archive is closed");
        }
        if (file == null) {
            file = opener.open();
        }
        return file;
    }

    @Override
    public synchronized void close() throws IOException {
        closed = true;
        if (file != null) {
            file.close();
        }
    }
}
