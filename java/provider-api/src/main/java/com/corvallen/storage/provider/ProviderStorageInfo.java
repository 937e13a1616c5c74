package com.corvallen.storage.provider;

/**
 * Capacity and occupied space of the storage that holds a location. Immutable; safe on any thread; no getter throws.
 */
public final class ProviderStorageInfo {
    private final long storageCapacity;
    private final long spaceOccupied;

    /**
     * Creates the information about a storage. The numbers are not checked, and the host reads them as unsigned: a
     * negative number becomes a very large one.
     *
     * @param storageCapacity the total size in bytes
     * @param spaceOccupied the bytes in use or reserved for others; the process can still write the rest
     */
    public ProviderStorageInfo(long storageCapacity, long spaceOccupied) {
        this.storageCapacity = storageCapacity;
        this.spaceOccupied = spaceOccupied;
    }

    /**
     * Returns the total size of the storage.
     *
     * @return the size in bytes
     */
    public long getStorageCapacity() {
        return storageCapacity;
    }

    /**
     * Returns the space in use or reserved for others: all but what the process can still write.
     *
     * @return the size in bytes
     */
    public long getSpaceOccupied() {
        return spaceOccupied;
    }

    @Override
    public boolean equals(Object other) {
        if (!(other instanceof ProviderStorageInfo)) {
            return false;
        }
        ProviderStorageInfo that = (ProviderStorageInfo) other;
        return storageCapacity == that.storageCapacity && spaceOccupied == that.spaceOccupied;
    }

    @Override
    public int hashCode() {
        return Long.hashCode(storageCapacity) * 31 + Long.hashCode(spaceOccupied);
    }

    @Override
    public String toString() {
        return "ProviderStorageInfo[storageCapacity=" + storageCapacity + ", spaceOccupied=" + spaceOccupied + "]";
    }
}
