package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;

/** A back end in which nothing is and nothing can be done. The others override what they are about. */
public class EmptyProvider implements StorageProvider {
    @Override
    public boolean fileExists(StorageURI location) throws ProviderException {
        return false;
    }

    @Override
    public boolean folderExists(StorageURI location) throws ProviderException {
        return false;
    }

    @Override
    public FileAttributes getFileAttributes(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_FOUND, location);
    }

    @Override
    public FolderAttributes getFolderAttributes(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_FOUND, location);
    }

    @Override
    public FolderListEntry[] listFolder(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_FOUND, location);
    }

    @Override
    public ProviderChannel getReadOnlyChannel(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.NOT_FOUND, location);
    }
}
