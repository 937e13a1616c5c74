package com.corvallen.storage.provider;

/**
 * Where a back end sends change events. The host hands one to {@link StorageProvider#publishEventsFor}.
 *
 * <p>Usually all start requests of one provider carry the same publisher, and its events all go to the same receiver.
 * So a back end closes a publisher in {@link StorageProvider#dispose}, never in {@link
 * StorageProvider#stopPublishingEventsFor}: other locations may still use it.
 *
 * <p>Any thread may call, also several at a time.
 */
public interface EventPublisher extends AutoCloseable {
    /**
     * Delivers one event, and returns when the host has taken it. The host's code runs on the calling thread and may
     * call back into the provider, so the caller holds no lock that the provider's operations need.
     *
     * <p>After {@link #close} the event is dropped without a word: events and the end of watching always cross.
     *
     * @param kind what happened
     * @param watched the location that was given to {@link StorageProvider#publishEventsFor}
     * @param changed the location of the entry that changed: an entry below the watched one for the three "child" kinds,
     *     the watched location itself for the two "self" kinds
     * @param entryType what the changed entry is, or was before it was removed
     * @param originId who caused the change, in whatever way the back end names them, so that a host can tell its own
     *     changes; {@code null} if unknown, which the host reads as an empty text
     * @throws IllegalArgumentException if {@code kind} or {@code entryType} is null, saying which; nothing is delivered
     *     then
     */
    void publish(EventKind kind, StorageURI watched, StorageURI changed, EntryType entryType, String originId);

    /**
     * Ends delivery. Events published from now on are dropped, and deliveries that run on other threads have ended
     * when this returns. Closing again does the same.
     */
    @Override
    void close();
}
