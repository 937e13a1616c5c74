package com.corvallen.storage.backend.nio;

import java.nio.ByteBuffer;
import java.nio.charset.StandardCharsets;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.security.MessageDigest;
import java.security.NoSuchAlgorithmException;
import java.util.Arrays;

/**
 * The entries that a tree copy has taken: each with its name, and a file with its size and time. An entry is kept as a
 * 64-bit digest, so a million of them take 8 MB. The chance of taking one entry for another is then one in ten million
 * million. Used by one thread.
 */
final class CopiedEntries {
    private final MessageDigest digest;
    private long[] entries = new long[16];
    private int count;
    private boolean sorted;

    CopiedEntries() {
        try {
            digest = MessageDigest.getInstance("SHA-256");
        } catch (NoSuchAlgorithmException e) {
            throw new IllegalStateException("every Java has it", e);
        }
    }

    /** Returns the digest of an entry. A folder's size and time change with its children, so they do not count. */
    long markOf(long parent, Path name, BasicFileAttributes attributes) {
        boolean isFolder = attributes.isDirectory();
        digest.update(ByteBuffer.allocate(2 * Long.BYTES + 1)
                .putLong(parent)
                .putLong(isFolder ? 0 : attributes.size())
                .put((byte) (isFolder ? 1 : 0))
                .flip());
        update(Names.of(name));
        update(String.valueOf(attributes.fileKey()));
        update(isFolder ? "" : attributes.lastModifiedTime().toString());
        return ByteBuffer.wrap(digest.digest()).getLong();
    }

    private void update(String text) {
        digest.update(text.getBytes(StandardCharsets.UTF_8));
        digest.update((byte) 0);
    }

    void add(long mark) {
        if (count == entries.length) {
            entries = Arrays.copyOf(entries, 2 * count);
        }
        entries[count++] = mark;
        sorted = false;
    }

    boolean contains(long mark) {
        if (!sorted) {
            Arrays.sort(entries, 0, count);
            sorted = true;
        }
        return Arrays.binarySearch(entries, 0, count, mark) >= 0;
    }
}
