package com.corvallen.jstore.test;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.ExtendedFeature;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;

/** Tells what the name of a location asks for as soon as it is watched, and nothing later. */
public final class EventProvider extends EmptyProvider {
    /** More than any host keeps. */
    private static final int STORM = 70_000;

    @Override
    public void publishEventsFor(StorageURI location, EventPublisher publisher) throws ProviderException {
        StorageURI child = location.resolve("child");
        switch (location.getName()) {
            case "deep":
                publisher.publish(EventKind.ChildAdded, location, child, EntryType.Folder, "someone");
                publisher.publish(EventKind.ChildAdded, location, child.resolve("x"), EntryType.File, "someone");
                break;
            case "elsewhere":
                publisher.publish(EventKind.ChildAdded, child, child.resolve("x"), EntryType.File, null);
                break;
            case "storm":
                for (int i = 0; i < STORM; i++) {
                    publisher.publish(EventKind.ChildModified, location, child, EntryType.File, null);
                }
                break;
            default:
                break;
        }
    }

    @Override
    public void stopPublishingEventsFor(StorageURI location) throws ProviderException {
        if (location.getName().equals("for-ever")) {
            throw new ProviderException(ErrorCode.IN_USE, location);
        }
    }

    @Override
    public boolean hasFeature(ExtendedFeature feature) {
        if (feature == ExtendedFeature.RecursiveFolderRemoval) {
            return true;
        }
        throw new IllegalStateException("do not ask me");
    }

    @Override
    public boolean folderExists(StorageURI location) {
        return true;
    }
}
