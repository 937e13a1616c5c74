package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderStorageInfo;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code getProviderStorageInfo}. */
public abstract class GetProviderStorageInfoContract extends OperationContract {
    protected GetProviderStorageInfoContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    private void assertPlausible(StorageURI location) throws Exception {
        ProviderStorageInfo info = provider.getProviderStorageInfo(location);
        assertTrue(info.getSpaceOccupied() >= 0, info::toString);
        assertTrue(info.getStorageCapacity() > info.getSpaceOccupied(), info::toString);
    }

    @Test
    void everyLocationReportsItsStorage() throws Exception {
        assertPlausible(at());
        assertPlausible(file("x", "file"));
        assertPlausible(folder("folder"));
    }

    @Test
    void missingIsNotFound() throws Exception {
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.getProviderStorageInfo(a));
    }
}
