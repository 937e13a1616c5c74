package com.corvallen.storage.provider;

import static org.junit.jupiter.api.Assertions.assertDoesNotThrow;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.Timeout;
import org.junit.jupiter.api.function.Executable;

/** Nothing registers the native method here, so an event that gets as far as native code ends in a link error. */
@Timeout(30)
class NativePublisherTest {
    private static final StorageURI PLACE = new StorageURI("java:///a");

    private final NativePublisher publisher = new NativePublisher(1);

    private void publish(EventKind kind, EntryType type) {
        publisher.publish(kind, PLACE, PLACE, type, "me");
    }

    @Test
    void openPublisherGoesToNativeCode() {
        assertThrows(UnsatisfiedLinkError.class, () -> publish(EventKind.SelfModified, EntryType.File));
    }

    @Test
    void closedPublisherDropsEvents() {
        publisher.close();
        assertDoesNotThrow(() -> publish(EventKind.SelfModified, EntryType.File));
    }

    @Test
    void nullWordsNeverReachNativeCode() {
        assertRefused("kind", () -> publish(null, EntryType.File));
        assertRefused("entry type", () -> publish(EventKind.SelfModified, null));
    }

    private static void assertRefused(String what, Executable publishing) {
        String message = assertThrows(IllegalArgumentException.class, publishing).getMessage();
        assertTrue(message.contains(what), message);
    }

    @Test
    void nullLocationsAndOriginAreDelivered() {
        assertThrows(
                UnsatisfiedLinkError.class,
                () -> publisher.publish(EventKind.SelfRemoved, null, null, EntryType.Folder, null));
    }

    @Test
    void failedDeliveryDoesNotKeepThePublisherFromClosing() throws InterruptedException {
        Thread delivery = new Thread(() ->
                assertThrows(UnsatisfiedLinkError.class, () -> publish(EventKind.ChildAdded, EntryType.File)));
        delivery.start();
        delivery.join();
        publisher.close();
    }
}
