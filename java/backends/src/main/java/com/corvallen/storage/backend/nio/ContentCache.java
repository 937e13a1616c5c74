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
 * Caches the content of small files, so that reading one again costs only a check of its attributes. Off by default. A
 * content is used for a path as long as size, modification time and identity of the file stay the same; the least
 * recently used contents go first. A file whose identity the file system does not report is not cached: a zip archive
 * could replace it unnoticed by another one of the same size and time. Safe on any thread.
 */
final class ContentCache {
    static final String SETTING = "gds.enableContentCache";
    static final int MAX_FILE_SIZE = 256 << 10;
    static final long MAX_TOTAL_SIZE = 32 << 20;

    /** Clocks of file systems are coarse: a file that has just changed may change again with the same time. */
    static final Duration SETTLED = Duration.ofSeconds(2);

    private final Map<Path, Kept> contents = new LinkedHashMap<>(16, 0.75f, /* accessOrder= */ true);
    private boolean enabled;
    private long size;
    private long hits;
    private long misses;

    /** The bytes of a file, and its attributes when they were read. */
    private static final class Kept {
        final byte[] bytes;
        private final BasicFileAttributes attributes;

        Kept(byte[] bytes, BasicFileAttributes attributes) {
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
                    ErrorCode.NOT_SUPPORTED, null, SETTING + " must be true or false, not \"" + value + "\"");
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

    /** Opens a file for reading: from the cache, or else from disk, which may add it to the cache. */
    SeekableByteChannel open(Found found, Failures.Query<SeekableByteChannel> file)
            throws IOException, ProviderException {
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
                && !FileUses.isWritten(found);
    }

    private synchronized byte[] get(Found found) {
        Kept content = contents.get(found.path);
        if (content != null && content.isOf(found.attributes)) {
            hits++;
            return content.bytes;
        }
        misses++;
        drop(found.path);
        return null;
    }

    /**
     * Reads a file and caches it; returns null, with the channel back at its beginning, if the file may be changing.
     */
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
        contents.put(found.path, new Kept(bytes, found.attributes));
        size += bytes.length;
        Iterator<Kept> oldest = contents.values().iterator();
        while (size > MAX_TOTAL_SIZE) {
            size -= oldest.next().bytes.length;
            oldest.remove();
        }
    }

    /** Forgets the content of a file that is about to change. */
    synchronized void drop(Path path) {
        Kept content = contents.remove(path);
        if (content != null) {
            size -= content.bytes.length;
        }
    }

    /** Returns how often a content was found. */
    synchronized long hits() {
        return hits;
    }

    /** Returns how often it was not, for files that are small enough. */
    synchronized long misses() {
        return misses;
    }

    /** Returns the number of contents. */
    synchronized int count() {
        return contents.size();
    }

    /** Returns their size in bytes. */
    synchronized long size() {
        return size;
    }
}
