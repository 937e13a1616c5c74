package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.FileInputStream;
import java.io.IOException;
import java.io.InputStream;

/** Creating a folder takes until the other end of the named pipe {@code jstore.test.gate} is opened and closed. */
public final class BlockingProvider extends EmptyProvider {
    @Override
    public void createFolder(StorageURI location) throws ProviderException {
        try (InputStream gate = new FileInputStream(System.getProperty("jstore.test.gate"))) {
            while (gate.read() >= 0) {}
        } catch (IOException e) {
            throw new ProviderException(ErrorCode.UNAVAILABLE, location, e.getMessage(), e);
        }
    }
}
