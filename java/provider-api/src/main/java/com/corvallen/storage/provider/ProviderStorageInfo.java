package com.corvallen.storage.provider;

/** Capacity and occupied space of the storage behind a location. Immutable; safe on any thread; no getter throws. */
public final class ProviderStorageInfo {
    private final long storageCapacity;
    private final long spaceOccupied;

    /**
     * Makes the information about one storage. Both numbers are handed on as they are, and the host reads them as
     * unsigned: a negative one becomes a huge one.
     *
     * @param storageCapacity bytes in all
     * @param spaceOccupied bytes in use; what is left of the capacity is what the process can still write
     */
    public ProviderStorageInfo(long storageCapacity, long spaceOccupied) {
        this.storageCapacity = storageCapacity;
        this.spaceOccupied = spaceOccupied;
    }

    /**
     * Returns how much the storage can hold in all.
     *
     * @return bytes
     */
    public long getStorageCapacity() {
        return storageCapacity;
    }

    /**
     * Returns how much of it is in use, or kept for others: all but what the process can still write.
     *
     * @return bytes
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
