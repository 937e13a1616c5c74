package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;

/** Passes every call on to another content. Subclasses override what they change. */
abstract class DelegatingContent implements Content {
    private final Content content;

    DelegatingContent(Content content) {
        this.content = content;
    }

    @Override
    public int read(ByteBuffer target, long position) throws IOException {
        return content.read(target, position);
    }

    @Override
    public int write(ByteBuffer source, long position) throws IOException {
        return content.write(source, position);
    }

    @Override
    public long size() throws IOException {
        return content.size();
    }

    @Override
    public void truncate(long size) throws IOException {
        content.truncate(size);
    }
}
