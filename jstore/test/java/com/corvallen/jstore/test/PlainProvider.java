package com.corvallen.jstore.test;

import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.StorageURI;

/** Every location is a file of 42 bytes, and nothing more is known of it. */
public final class PlainProvider extends EmptyProvider {
    @Override
    public boolean fileExists(StorageURI location) {
        return true;
    }

    @Override
    public FileAttributes getFileAttributes(StorageURI location) {
        return new FileAttributes(42, 1, false);
    }
}
