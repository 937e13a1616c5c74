package com.corvallen.storage.contract;

import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code createFile}. */
public abstract class CreateFileContract extends CreateContract {
    protected CreateFileContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Override
    protected final void create(StorageURI location) throws ProviderException {
        provider.createFile(location);
    }

    @Override
    protected final void assertCreated(StorageURI location) throws Exception {
        assertFile("", location);
    }

    @Test
    void newFileIsEmpty() throws Exception {
        provider.createFile(at("a"));
        assertFile("", at("a"));
    }
}
