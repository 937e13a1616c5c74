package com.corvallen.storage.provider;

/**
 * The publisher that delivers events to the native host. The native side makes it; a back end only sees it as an
 * {@link EventPublisher}.
 *
 * <p>The handle is the address of the receiver in native memory. It stays valid until {@link StorageProvider#dispose}
 * has returned and not a moment longer, and nothing on the native side guards against an event that comes later. Two
 * rules keep that safe:
 *
 * <ul>
 *   <li>Only the words of {@link EventKind} and {@link EntryType} are delivered. The native side ends the process on
 *       any other; {@link #publish} takes enums and refuses null, so there is no other.
 *   <li>A back end closes every publisher it was given in its {@code dispose()}. After {@link #close} events are
 *       dropped before they reach native code, and {@code close()} does not return while a delivery is running on
 *       another thread. So when {@code dispose()} returns, no thread is inside the receiver and none can enter it.
 * </ul>
 *
 * <p>{@code close()} may be called from within a delivery, on the thread that delivers (a receiver that disposes of the
 * provider does that). It then waits for the deliveries of all other threads and returns while its own are still
 * running; these end when the receiver returns. If several threads close from within deliveries at the same time, they
 * do not wait for each other, which would never end. Whoever frees the receiver from within a delivery must therefore
 * not touch it afterwards.
 *
 * <p>{@code close()} cannot be interrupted; an interrupt is kept for the caller. It takes as long as the slowest
 * running delivery, so a thread that closes must hold no lock which a receiver needs.
 *
 * <p>A handle of 0 stands for no receiver: the native side drops its events.
 *
 * <p>Safe on any thread. Deliveries from different threads run at the same time; those of one thread keep their order.
 */
public final class NativePublisher implements EventPublisher {
    private final DeliveryGate gate = new DeliveryGate();
    private final long handle;

    /**
     * Makes the publisher for a receiver in native memory. Called by the native side.
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
