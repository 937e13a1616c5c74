package com.corvallen.storage.provider;

/**
 * The publisher that delivers events to the native host. The native side creates it; a back end sees it only as an
 * {@link EventPublisher}.
 *
 * <p>The handle is the address of the receiver in native memory. It is valid only until {@link StorageProvider#dispose}
 * returns, and the native side does not guard against a later event. Two rules make that safe:
 *
 * <ul>
 *   <li>Only the constant names of {@link EventKind} and {@link EntryType} are delivered. Any other word would end the
 *       process, but {@link #publish} takes enums and rejects null.
 *   <li>A back end closes every publisher it received in {@code dispose()}. After {@link #close} events are dropped
 *       before they reach native code, and {@code close()} does not return while a delivery runs on another thread. So
 *       when {@code dispose()} returns, no thread is inside the receiver and none can enter it.
 * </ul>
 *
 * <p>{@code close()} may be called during a delivery, on the delivering thread (by a receiver that disposes of the
 * provider). It then waits for the deliveries of all other threads, and returns while its own delivery still runs: that
 * one ends when the receiver returns. If several threads close during deliveries at the same time, they do not wait for
 * each other, because that wait would never end. Code that frees the receiver during a delivery must therefore not use
 * it afterwards.
 *
 * <p>{@code close()} cannot be interrupted; the caller still sees the interrupt afterwards. It takes as long as the
 * slowest running delivery, so a thread that closes must not hold a lock that a receiver needs.
 *
 * <p>A handle of 0 means that there is no receiver: the native side drops the events.
 *
 * <p>Safe on any thread. Deliveries of different threads run at the same time; those of one thread keep their order.
 */
public final class NativePublisher implements EventPublisher {
    private final DeliveryGate gate = new DeliveryGate();
    private final long handle;

    /**
     * Creates the publisher for a receiver in native memory. Called by the native side.
     *
     * @param handle the address of the receiver, or 0 for none
     */
    public NativePublisher(long handle) {
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

    /** Registered by the native side, under this name and signature, before the first publisher is made. */
    private native void nativePublish(
            long handle, String kind, String watched, String changed, String entryType, String originId);
}
