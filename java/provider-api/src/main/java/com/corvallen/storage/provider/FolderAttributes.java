package com.corvallen.storage.provider;

/** Time of last modification and writability of a folder. Immutable; safe on any thread; no getter throws. */
public final class FolderAttributes {
    private final long lastModified;
    private final boolean writable;

    /**
     * Creates the attributes of a folder.
     *
     * @param lastModified milliseconds since 1970-01-01 00:00:00 UTC, negative before that
     * @param writable whether entries may be added to the folder and removed from it
     */
    public FolderAttributes(long lastModified, boolean writable) {
        this.lastModified = lastModified;
        this.writable = writable;
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
     * Returns whether entries may be added and removed.
     *
     * @return true if they may
     */
    public boolean isWritable() {
        return writable;
    }

    @Override
    public boolean equals(Object other) {
        if (!(other instanceof FolderAttributes)) {
            return false;
        }
        FolderAttributes that = (FolderAttributes) other;
        return lastModified == that.lastModified && writable == that.writable;
    }

    @Override
    public int hashCode() {
        return Long.hashCode(lastModified) * 31 + Boolean.hashCode(writable);
    }

    @Override
    public String toString() {
        return "FolderAttributes[lastModified=" + lastModified + ", writable=" + writable + "]";
    }
}
