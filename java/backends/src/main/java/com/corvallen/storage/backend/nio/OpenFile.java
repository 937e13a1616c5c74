package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.SeekableByteChannel;

/**
 * What a channel holds open. Separate from the channel, so that it can be released when the channel is garbage. Safe on
 * any thread.
 */
final class OpenFile implements AutoCloseable {
    final SeekableByteChannel channel;
    private final FileUses.Use use;
    private final ChannelSet set;
    private boolean closed;

    OpenFile(SeekableByteChannel channel, FileUses.Use use, ChannelSet set) {
        this.channel = channel;
        this.use = use;
        this.set = set;
    }

    /** Closes the file, and releases it even if closing fails. A second close does nothing. */
    @Override
    public void close() throws IOException {
        synchronized (this) {
            if (closed) {
                return;
            }
            closed = true;
        }
        try {
            channel.close();
        } finally {
            use.close();
            set.remove(this);
        }
    }

    /** Closes a file that nobody has closed. A failure is logged, as no caller is left. */
    void abandon() {
        try {
            close();
        } catch (IOException | RuntimeException e) {
            Log.error("Cannot close a file; what was written to it may be lost", e);
        }
    }
}
