package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.SeekableByteChannel;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.time.Duration;
import java.time.Instant;
import java.util.Iterator;
import java.util.LinkedHashMap;
import java.util.Map;

/**
 * What small files hold, so that reading them again costs no more than one look at their attributes. Off until it is
 * switched on. A content is kept for a path as long as size, time of last modification and identity of the file are
 * what they were; those that were not asked for longest go first. Files whose identity the file system does not tell are
 * not kept: a zip archive replaces one without a trace if size and time are the same. Safe on any thread.
 */
final class ContentCache {
    static final String SETTING = "gds.enableContentCache";
    static final int MAX_FILE_SIZE = 256 << 10;
    static final long MAX_TOTAL_SIZE = 32 << 20;

    /** Clocks of file systems are coarse: a file that has just changed may change again without showing it. */
    static final Duration SETTLED = Duration.ofSeconds(2);

    private final Map<Path, Content> contents = new LinkedHashMap<>(16, 0.75f, /* accessOrder= */ true);
    private boolean enabled;
    private long size;
    private long hits;
    private long misses;

    /** The bytes of a file, and the attributes it had when they were read. */
    private static final class Content {
        final byte[] bytes;
        private final BasicFileAttributes attributes;

        Content(byte[] bytes, BasicFileAttributes attributes) {
            this.bytes = bytes;
            this.attributes = attributes;
        }

        boolean isOf(BasicFileAttributes now) {
            return FileIdentity.isUnchanged(attributes, now);
        }
    }

    void configure(Map<String, String> settings) throws ProviderException {
        if (settings == null || !settings.containsKey(SETTING)) {
            return;
        }
        String value = settings.get(SETTING);
        if (value == null || value.isBlank() || value.trim().equalsIgnoreCase("false")) {
            enable(false);
        } else if (value.trim().equalsIgnoreCase("true")) {
            enable(true);
        } else {
            throw new ProviderException(
                    ErrorCode.NOT_SUPPORTED, null, SETTING + " is true or false, not \"" + value + "\"");
        }
    }

    synchronized boolean isEnabled() {
        return enabled;
    }

    private synchronized void enable(boolean enable) {
        enabled = enable;
        if (!enable) {
            contents.clear();
            size = 0;
        }
    }

    /** Opens a file for reading: what is kept of it, or the file itself, which may be kept by that. */
    SeekableByteChannel open(Found found, IoQuery<SeekableByteChannel> file) throws IOException, ProviderException {
        if (!mayKeep(found)) {
            return file.run();
        }
        byte[] kept = get(found);
        if (kept != null) {
            return new MemoryChannel(kept);
        }
        SeekableByteChannel channel = file.run();
        try {
            byte[] bytes = read(channel, found);
            if (bytes == null) {
                return channel;
            }
            channel.close();
            return new MemoryChannel(bytes);
        } catch (IOException | RuntimeException e) {
            channel.close();
            throw e;
        }
    }

    private synchronized boolean mayKeep(Found found) {
        return enabled
                && found.attributes.fileKey() != null
                && found.attributes.size() <= MAX_FILE_SIZE
                && !OpenFiles.isWritten(found);
    }

    private synchronized byte[] get(Found found) {
        Content content = contents.get(found.path);
        if (content != null && content.isOf(found.attributes)) {
            hits++;
            return content.bytes;
        }
        misses++;
        drop(found.path);
        return null;
    }

    /** Reads a file and keeps it; returns null, at the beginning again, if it does not hold still. */
    private byte[] read(SeekableByteChannel channel, Found found) throws IOException {
        if (found.attributes.lastModifiedTime().toInstant().isAfter(Instant.now().minus(SETTLED))) {
            return null;
        }
        ByteBuffer buffer = ByteBuffer.allocate(Math.toIntExact(found.attributes.size()));
        while (buffer.hasRemaining() && channel.read(buffer) >= 0) {
            continue;
        }
        BasicFileAttributes now = EntryKind.attributesOf(found.path);
        if (buffer.hasRemaining() || now == null || !FileIdentity.isUnchanged(found.attributes, now)) {
            channel.position(0);
            return null;
        }
        keep(found, buffer.array());
        return buffer.array();
    }

    private synchronized void keep(Found found, byte[] bytes) {
        if (!enabled) {
            return;
        }
        drop(found.path);
        contents.put(found.path, new Content(bytes, found.attributes));
        size += bytes.length;
        Iterator<Content> oldest = contents.values().iterator();
        while (size > MAX_TOTAL_SIZE) {
            size -= oldest.next().bytes.length;
            oldest.remove();
        }
    }

    /** Forgets what a file held, because it is about to change. */
    synchronized void drop(Path path) {
        Content content = contents.remove(path);
        if (content != null) {
            size -= content.bytes.length;
        }
    }

    /** How often a content was there. */
    synchronized long hits() {
        return hits;
    }

    /** How often it was not, though the file was small enough. */
    synchronized long misses() {
        return misses;
    }

    /** How many contents are kept. */
    synchronized int count() {
        return contents.size();
    }

    /** How many bytes they are in all. */
    synchronized long size() {
        return size;
    }
}
