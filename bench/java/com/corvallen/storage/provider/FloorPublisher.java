package com.corvallen.storage.provider;

/**
 * The twin of {@link NativePublisher} with a native method of its own, so that the floor's events take the same way
 * through Java. It lives in the contract's package for the sake of its delivery gate.
 */
public final class FloorPublisher implements EventPublisher {
    private final DeliveryGate gate = new DeliveryGate();
    private final long handle;

    public FloorPublisher(long handle) {
        this.handle = handle;
    }

    @Override
    public void publish(
            EventKind kind, StorageURI watched, StorageURI changed, EntryType entryType, String originId) {
        if (kind == null) {
            throw new IllegalArgumentException("the kind of an event is null");
        }
        if (entryType == null) {
            throw new IllegalArgumentException("the entry type of an event is null");
        }
        if (!gate.enter()) {
            return;
        }
        try {
            nativePublish(handle, kind.name(), textOf(watched), textOf(changed), entryType.name(), originId);
        } finally {
            gate.leave();
        }
    }

    @Override
    public void close() {
        gate.close();
    }

    private static String textOf(StorageURI location) {
        return location == null ? null : location.getText();
    }

    private native void nativePublish(
            long handle, String kind, String watched, String changed, String entryType, String originId);
}
