package com.corvallen.jstore.test;

import com.corvallen.storage.provider.StorageURI;

/** Fails in a way that no back end should. */
public final class ThrowingProvider extends EmptyProvider {
    @Override
    public void createFile(StorageURI location) {
        throw new IllegalStateException("first line\n\tsecond line\r\n\tthird line");
    }
}
