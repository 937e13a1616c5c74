package com.corvallen.storage.provider;

/**
 * Where a back end sends change events. The host hands one to {@link StorageProvider#publishEventsFor}.
 *
 * <p>All start requests of one provider usually pass the same publisher, and all its events go to the same receiver. A
 * back end therefore closes a publisher only in {@link StorageProvider#dispose}, never in {@link
 * StorageProvider#stopPublishingEventsFor}: other locations may still use it.
 *
 * <p>Any thread may call, and several may call at a time.
 */
public interface EventPublisher extends AutoCloseable {
    /**
     * Delivers one event and returns when the host has handled it. The host's code runs on the calling thread and may
     * call the provider, so the caller must not hold a lock that the provider's operations need.
     *
     * <p>After {@link #close} the event is silently dropped, because a back end cannot avoid an event that crosses the
     * end of watching.
     *
     * @param kind what happened
     * @param watched the location given to {@link StorageProvider#publishEventsFor}
     * @param changed the location that changed: an entry below the watched location for the three "child" kinds, the
     *     watched location itself for the two "self" kinds
     * @param entryType what the changed entry is, or was before it was removed
     * @param originId who caused the change, in any form that lets a host recognise its own changes; {@code null} if
     *     unknown, which the host reads as an empty text
     * @throws IllegalArgumentException if {@code kind} or {@code entryType} is null; the message says which, and
     *     nothing is delivered
     */
    void publish(EventKind kind, StorageURI watched, StorageURI changed, EntryType entryType, String originId);

    /**
     * Ends delivery. From now on events are dropped, and when this method returns, deliveries on other threads have
     * ended. Closing again does the same.
     */
    @Override
    void close();
}
