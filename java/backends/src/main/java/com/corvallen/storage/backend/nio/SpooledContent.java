package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.util.Arrays;

/**
 * The content of a file in a {@link Spool}. A block that was never written takes no room. In the last block, what lies
 * after the end is zeros.
 */
final class SpooledContent implements Content {
    private static final int NONE = -1;

    private final Spool spool;
    private int[] blocks = new int[0];
    private long size;

    SpooledContent(Spool spool) {
        this.spool = spool;
    }

    @Override
    public synchronized int read(ByteBuffer target, long position) throws IOException {
        if (position >= size) {
            return -1;
        }
        int index = indexOf(position);
        int offset = offsetOf(position);
        int wanted = (int) Math.min(target.remaining(), size - position);
        int count = Math.min(wanted, runFrom(index, offset + wanted) - offset);
        ByteBuffer part = target.duplicate().limit(target.position() + count);
        if (blocks[index] == NONE) {
            part.put(new byte[count]);
        } else {
            spool.read(blocks[index], offset, part);
        }
        target.position(part.position());
        return count;
    }

    @Override
    public synchronized int write(ByteBuffer source, long position) throws IOException {
        if (!source.hasRemaining()) {
            return 0;
        }
        int index = indexOf(position);
        int offset = offsetOf(position);
        ensure(index, indexOf(position + source.remaining() - 1));
        int count = Math.min(source.remaining(), runFrom(index, offset + source.remaining()) - offset);
        ByteBuffer part = source.duplicate().limit(source.position() + count);
        spool.write(blocks[index], offset, part);
        source.position(part.position());
        size = Math.max(size, position + count);
        return count;
    }

    @Override
    public synchronized long size() {
        return size;
    }

    @Override
    public synchronized void truncate(long newSize) throws IOException {
        if (newSize >= size) {
            return;
        }
        int kept = newSize == 0 ? 0 : indexOf(newSize - 1) + 1;
        int rest = offsetOf(newSize);
        if (rest > 0 && blocks[kept - 1] != NONE) {
            spool.write(blocks[kept - 1], rest, ByteBuffer.allocate(Spool.BLOCK - rest));
        }
        release(kept);
        size = newSize;
    }

    /** Gives all room back. */
    synchronized void release() {
        release(0);
        size = 0;
    }

    private void release(int kept) {
        for (int index = kept; index < blocks.length; index++) {
            if (blocks[index] != NONE) {
                spool.free(blocks[index]);
            }
        }
        blocks = Arrays.copyOf(blocks, kept);
    }

    /** Returns how many bytes lie in one piece from the beginning of a block; stops counting at what is useful. */
    private int runFrom(int index, int useful) {
        int end = index + 1;
        while ((end - index) * Spool.BLOCK < useful && blocks[index] != NONE && blocks[end] == blocks[end - 1] + 1) {
            end++;
        }
        return (end - index) * Spool.BLOCK;
    }

    private void ensure(int first, int last) throws IOException {
        int known = blocks.length;
        if (last >= known) {
            blocks = Arrays.copyOf(blocks, Math.max(last + 1, known + known / 2));
            Arrays.fill(blocks, known, blocks.length, NONE);
        }
        for (int index = first; index <= last; index++) {
            if (blocks[index] == NONE) {
                blocks[index] = spool.allocate();
            }
        }
    }

    private static int indexOf(long position) throws IOException {
        long index = position / Spool.BLOCK;
        if (index >= Integer.MAX_VALUE - 8) {
            throw new IOException("File too large");
        }
        return (int) index;
    }

    private static int offsetOf(long position) {
        return (int) (position % Spool.BLOCK);
    }
}
