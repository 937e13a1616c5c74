package com.corvallen.storage.backend.nio;

import com.corvallen.storage.contract.ProviderContract;
import com.corvallen.storage.contract.StorageUnderTest;

/** A mount of a zip archive. */
class ArchiveMountContractTest extends ProviderContract {
    @Override
    protected StorageUnderTest open() throws Exception {
        return NioStorage.ofArchive();
    }
}
