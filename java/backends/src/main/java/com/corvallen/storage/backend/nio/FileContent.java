package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;

/** The content of a file on disk. The owner of the channel closes it. */
final class FileContent implements Content {
    private final FileChannel channel;

    FileContent(FileChannel channel) {
        this.channel = channel;
    }

    @Override
    public int read(ByteBuffer target, long position) throws IOException {
        return channel.read(target, position);
    }

    @Override
    public int write(ByteBuffer source, long position) throws IOException {
        return channel.write(source, position);
    }

    @Override
    public long size() throws IOException {
        return channel.size();
    }

    @Override
    public void truncate(long size) throws IOException {
        channel.truncate(size);
    }
}
