package com.corvallen.storage.test.isolated;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.ExtendedFeature;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import com.corvallen.storage.test.Script;

/**
 * A back end in a jar that only a loader of its own knows. Calls go to the log of the script; a location that ends in
 * "missing" is answered with NOT_FOUND, one that ends in "broken" with an exception that is nobody's.
 */
public class IsolatedBackend implements StorageProvider {
    public IsolatedBackend() {
        Script.instanceMade();
    }

    @Override
    public boolean fileExists(StorageURI location) throws ProviderException {
        note("fileExists", location);
        return true;
    }

    @Override
    public boolean folderExists(StorageURI location) throws ProviderException {
        note("folderExists", location);
        return false;
    }

    @Override
    public void createFile(StorageURI location) throws ProviderException {
        note("createFile", location);
    }

    @Override
    public boolean hasFeature(ExtendedFeature feature) {
        Script.note("hasFeature", feature.name());
        return feature == ExtendedFeature.RecursiveFolderRemoval;
    }

    @Override
    public FileAttributes getFileAttributes(StorageURI location) throws ProviderException {
        note("getFileAttributes", location);
        return new FileAttributes(1, 2, true);
    }

    @Override
    public FolderAttributes getFolderAttributes(StorageURI location) throws ProviderException {
        note("getFolderAttributes", location);
        return new FolderAttributes(3, false);
    }

    @Override
    public FolderListEntry[] listFolder(StorageURI location) throws ProviderException {
        note("listFolder", location);
        return new FolderListEntry[] {new FolderListEntry("isolated", false)};
    }

    @Override
    public ProviderChannel getReadOnlyChannel(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_SUPPORTED, location);
    }

    @Override
    public void publishEventsFor(StorageURI location, EventPublisher publisher) throws ProviderException {
        note("publishEventsFor", location);
    }

    @Override
    public void dispose() {
        Script.note("dispose");
    }

    private static void note(String method, StorageURI location) throws ProviderException {
        Script.note(method, location.getText());
        if (location.getText().endsWith("missing")) {
            throw new ProviderException(ErrorCode.NOT_FOUND, location);
        }
        if (location.getText().endsWith("broken")) {
            throw new IllegalStateException("broken");
        }
    }
}
