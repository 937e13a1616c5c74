package com.corvallen.storage.provider;

/**
 * Size, time of last modification and writability of a file. Immutable; safe on any thread; no getter throws.
 */
public final class FileAttributes {
    private final long size;
    private final long lastModified;
    private final boolean writable;

    /**
     * Creates the attributes of a file.
     *
     * @param size the size in bytes; it is not checked, and the host reads it as an unsigned number
     * @param lastModified milliseconds since 1970-01-01 00:00:00 UTC, negative before that
     * @param writable whether the content may be changed
     */
    public FileAttributes(long size, long lastModified, boolean writable) {
        this.size = size;
        this.lastModified = lastModified;
        this.writable = writable;
    }

    /**
     * Returns the size.
     *
     * @return the size in bytes
     */
    public long getSize() {
        return size;
    }

    /**
     * Returns the time of last modification.
     *
     * @return milliseconds since 1970-01-01 00:00:00 UTC
     */
    public long getLastModified() {
        return lastModified;
    }

    /**
     * Returns whether the content may be changed.
     *
     * @return true if it may
     */
    public boolean isWritable() {
        return writable;
    }

    @Override
    public boolean equals(Object other) {
        if (!(other instanceof FileAttributes)) {
            return false;
        }
        FileAttributes that = (FileAttributes) other;
        return size == that.size && lastModified == that.lastModified && writable == that.writable;
    }

    @Override
    public int hashCode() {
        return (Long.hashCode(size) * 31 + Long.hashCode(lastModified)) * 31 + Boolean.hashCode(writable);
    }

    @Override
    public String toString() {
        return "FileAttributes[size=" + size + ", lastModified=" + lastModified + ", writable=" + writable + "]";
    }
}
