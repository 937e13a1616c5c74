package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code createFolder}. */
public abstract class CreateFolderContract extends CreateContract {
    protected CreateFolderContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Override
    protected final void create(StorageURI location) throws ProviderException {
        provider.createFolder(location);
    }

    @Override
    protected final void assertCreated(StorageURI location) throws ProviderException {
        assertFolder(location);
    }

    @Test
    void newFolderIsEmpty() throws Exception {
        provider.createFolder(at("a"));
        assertFolder(at("a"));
        assertEquals(0, storage.countEntries(at("a")));
    }
}
