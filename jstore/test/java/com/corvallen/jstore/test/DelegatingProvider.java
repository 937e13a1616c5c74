package com.corvallen.jstore.test;

import com.corvallen.storage.backend.nio.NioProvider;
import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;

/** A back end that leaves everything to another one. Those below it change what they are about. */
public class DelegatingProvider implements StorageProvider {
    protected final StorageProvider real;

    protected DelegatingProvider() {
        this(new NioProvider());
    }

    protected DelegatingProvider(StorageProvider real) {
        this.real = real;
    }

    @Override
    public boolean fileExists(StorageURI location) throws ProviderException {
        return real.fileExists(location);
    }

    @Override
    public boolean folderExists(StorageURI location) throws ProviderException {
        return real.folderExists(location);
    }

    @Override
    public void createFile(StorageURI location) throws ProviderException {
        real.createFile(location);
    }

    @Override
    public void createFolder(StorageURI location) throws ProviderException {
        real.createFolder(location);
    }

    @Override
    public void removeFile(StorageURI location) throws ProviderException {
        real.removeFile(location);
    }

    @Override
    public void moveFile(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        real.moveFile(source, target, replace);
    }

    @Override
    public FileAttributes getFileAttributes(StorageURI location) throws ProviderException {
        return real.getFileAttributes(location);
    }

    @Override
    public FolderAttributes getFolderAttributes(StorageURI location) throws ProviderException {
        return real.getFolderAttributes(location);
    }

    @Override
    public ExtendedAttributes getExtendedAttributes(StorageURI location) throws ProviderException {
        return real.getExtendedAttributes(location);
    }

    @Override
    public void setLastModified(StorageURI location, long lastModified) throws ProviderException {
        real.setLastModified(location, lastModified);
    }

    @Override
    public FolderListEntry[] listFolder(StorageURI location) throws ProviderException {
        return real.listFolder(location);
    }

    @Override
    public ProviderChannel getChannel(StorageURI location, boolean create, boolean truncate, boolean exclusive)
            throws ProviderException {
        return real.getChannel(location, create, truncate, exclusive);
    }

    @Override
    public ProviderChannel getReadOnlyChannel(StorageURI location) throws ProviderException {
        return real.getReadOnlyChannel(location);
    }

    @Override
    public void dispose() {
        real.dispose();
    }
}
