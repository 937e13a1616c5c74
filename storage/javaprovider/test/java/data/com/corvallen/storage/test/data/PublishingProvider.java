package com.corvallen.storage.test.data;

import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.StorageURI;
import com.corvallen.storage.test.ScriptedProvider;

/** A back end that shows its publishers to {@link Publishers}, and closes them when it is disposed of. */
public final class PublishingProvider extends ScriptedProvider {
    private final Publishers publishers = Publishers.current();

    @Override
    public void publishEventsFor(StorageURI location, EventPublisher publisher) {
        super.publishEventsFor(location, publisher);
        publishers.handedOver(publisher);
    }

    @Override
    public void dispose() {
        publishers.close();
        super.dispose();
    }
}
