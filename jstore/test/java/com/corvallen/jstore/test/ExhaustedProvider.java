package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderStorageInfo;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;

/** Asks in each method for more memory than there can be; {@code java:///large} is a folder of 60,000 files. */
public final class ExhaustedProvider implements StorageProvider {
    private static final int FILES = 60_000;

    private static <T> T exhausted() {
        long[][] all = new long[64][];
        for (int i = 0; i < all.length; i++) {
            all[i] = new long[1 << 28];
        }
        throw new IllegalStateException("there was memory for " + all.length * 2L + " GiB");
    }

    private static boolean isLarge(StorageURI location) {
        return location.toString().contains("/large");
    }

    @Override
    public boolean fileExists(StorageURI location) {
        return !isLarge(location) && (boolean) exhausted();
    }

    @Override
    public boolean folderExists(StorageURI location) {
        return isLarge(location) || (boolean) exhausted();
    }

    @Override
    public void createFile(StorageURI location) {
        exhausted();
    }

    @Override
    public void createFolder(StorageURI location) {
        exhausted();
    }

    @Override
    public void removeFile(StorageURI location) {
        exhausted();
    }

    @Override
    public void removeFolder(StorageURI location) {
        exhausted();
    }

    @Override
    public void removeFolderRecursively(StorageURI location) {
        exhausted();
    }

    @Override
    public void moveFile(StorageURI source, StorageURI target, boolean replace) {
        exhausted();
    }

    @Override
    public void moveFolder(StorageURI source, StorageURI target, boolean replace) {
        exhausted();
    }

    @Override
    public FileAttributes getFileAttributes(StorageURI location) {
        return exhausted();
    }

    @Override
    public FolderAttributes getFolderAttributes(StorageURI location) {
        return exhausted();
    }

    @Override
    public FolderListEntry[] listFolder(StorageURI location) {
        if (!isLarge(location)) {
            return exhausted();
        }
        FolderListEntry[] entries = new FolderListEntry[FILES];
        for (int i = 0; i < FILES; i++) {
            entries[i] = new FolderListEntry("a-file-with-a-name-of-some-length-" + i, false);
        }
        return entries;
    }

    @Override
    public ProviderChannel getReadOnlyChannel(StorageURI location) {
        return exhausted();
    }

    @Override
    public ProviderChannel getChannel(StorageURI location, boolean create, boolean truncate, boolean exclusive) {
        return exhausted();
    }

    @Override
    public ExtendedAttributes getExtendedAttributes(StorageURI location) {
        return exhausted();
    }

    @Override
    public ProviderStorageInfo getProviderStorageInfo(StorageURI location) {
        return exhausted();
    }
}
