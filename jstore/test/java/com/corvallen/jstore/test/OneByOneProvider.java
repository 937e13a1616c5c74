package com.corvallen.jstore.test;

import com.corvallen.storage.backend.nio.NioProvider;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;

/** The default file system without a way to remove a folder with all it holds; keeps files named {@code kept}. */
public final class OneByOneProvider extends EmptyProvider {
    private final NioProvider files = new NioProvider();

    @Override
    public boolean fileExists(StorageURI location) throws ProviderException {
        return files.fileExists(location);
    }

    @Override
    public boolean folderExists(StorageURI location) throws ProviderException {
        return files.folderExists(location);
    }

    @Override
    public FolderListEntry[] listFolder(StorageURI location) throws ProviderException {
        return files.listFolder(location);
    }

    @Override
    public ExtendedAttributes getExtendedAttributes(StorageURI location) throws ProviderException {
        return files.getExtendedAttributes(location);
    }

    @Override
    public void removeFile(StorageURI location) throws ProviderException {
        if (location.getText().endsWith("/kept")) {
            throw new ProviderException(ErrorCode.ACCESS_DENIED, location);
        }
        files.removeFile(location);
    }

    @Override
    public void removeFolder(StorageURI location) throws ProviderException {
        files.removeFolder(location);
    }
}
