package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.lang.System.Logger.Level;
import java.nio.channels.SeekableByteChannel;

/**
 * What a channel holds open, apart from the channel itself, so that it can be released when nobody remembers the
 * channel any more. Safe on any thread.
 */
final class OpenFile implements AutoCloseable {
    final SeekableByteChannel channel;
    private final OpenFiles.Use use;
    private final ChannelSet set;
    private boolean closed;

    OpenFile(SeekableByteChannel channel, OpenFiles.Use use, ChannelSet set) {
        this.channel = channel;
        this.use = use;
        this.set = set;
    }

    /** Closes the file; closing again does nothing. The file is released even if that fails. */
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

    /** Closes what nobody has closed; a failure can only be logged, as there is nobody to report it to. */
    void abandon() {
        try {
            close();
        } catch (IOException | RuntimeException e) {
            System.getLogger(NioProvider.class.getName())
                    .log(Level.ERROR, "Cannot close a file; what was written to it may be lost", e);
        }
    }
}
