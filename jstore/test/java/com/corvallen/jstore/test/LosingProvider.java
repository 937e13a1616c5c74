package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;

/**
 * Takes files and loses them at the end: {@code jstore.test.end} says whether {@code close} throws a provider exception
 * ("coded") or any other ("plain"), or {@code dispose} throws ("disposal"), or nothing goes wrong.
 */
public final class LosingProvider extends EmptyProvider implements AutoCloseable {
    private static final String END = System.getProperty("jstore.test.end", "");
    private boolean closed;

    @Override
    public void createFile(StorageURI location) {}

    @Override
    public void close() throws ProviderException {
        closed = true;
        if (END.equals("coded")) {
            throw new ProviderException(ErrorCode.ACCESS_DENIED, new StorageURI("java://lost/"));
        }
        if (END.equals("plain")) {
            throw new IllegalStateException("the bytes\nare gone");
        }
    }

    @Override
    public void dispose() {
        if (!closed) {
            throw new IllegalStateException("not closed first");
        }
        if (END.equals("disposal")) {
            throw new IllegalStateException("lost at disposal");
        }
    }
}
