package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.Channels;
import java.nio.channels.FileChannel;
import java.nio.channels.ReadableByteChannel;
import java.nio.channels.WritableByteChannel;
import java.nio.file.FileSystems;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.OpenOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.Set;

/** Copies bytes in portions, so that an interrupted thread stops soon. */
final class ByteCopy {
    /** Does not follow a link, so nothing is opened that was not examined. */
    static final Set<OpenOption> READ_ITSELF = Set.of(StandardOpenOption.READ, LinkOption.NOFOLLOW_LINKS);

    private static final Set<OpenOption> CREATE = Set.of(StandardOpenOption.CREATE_NEW, StandardOpenOption.WRITE);
    private static final int BUFFER = 128 * 1024;

    /** Between two files of the default file system the system copies, without a buffer of ours. */
    private static final long PORTION = 8L << 20;

    private ByteCopy() {}

    /** Opens a file for reading. */
    static ReadableByteChannel open(Path path) throws IOException {
        return path.getFileSystem().equals(FileSystems.getDefault())
                ? Files.newByteChannel(path, READ_ITSELF)
                : Channels.newChannel(Files.newInputStream(path));
    }

    /** Creates a file that only its owner can open, where files have permissions. */
    static WritableByteChannel create(Path path) throws IOException {
        if (Privacy.isKnown(path.getFileSystem())) {
            return Files.newByteChannel(path, CREATE, Privacy.ofFile(path));
        }
        return Channels.newChannel(Files.newOutputStream(path, CREATE.toArray(new OpenOption[0])));
    }

    /** Copies everything. */
    static void copy(ReadableByteChannel from, WritableByteChannel to) throws IOException {
        if (from instanceof FileChannel && to instanceof FileChannel) {
            transfer((FileChannel) from, (FileChannel) to);
        } else {
            pump(from, to);
        }
    }

    /** The system copies no more than the file's size, but files whose content is made on reading hold more. */
    private static void transfer(FileChannel from, FileChannel to) throws IOException {
        long position = 0;
        long count;
        do {
            Interruption.check();
            count = from.transferTo(position, PORTION, to);
            position += count;
        } while (count > 0);
        pump(from.position(position), to);
    }

    private static void pump(ReadableByteChannel from, WritableByteChannel to) throws IOException {
        ByteBuffer buffer = ByteBuffer.allocate(BUFFER);
        while (from.read(buffer) >= 0) {
            Interruption.check();
            buffer.flip();
            while (buffer.hasRemaining()) {
                to.write(buffer);
            }
            buffer.clear();
        }
    }
}
