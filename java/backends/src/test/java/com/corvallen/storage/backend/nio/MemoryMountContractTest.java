package com.corvallen.storage.backend.nio;

import com.corvallen.storage.contract.ProviderContract;
import com.corvallen.storage.contract.StorageUnderTest;

/** A mount of a file system in memory. */
class MemoryMountContractTest extends ProviderContract {
    @Override
    protected StorageUnderTest open() throws Exception {
        return NioStorage.ofMemory();
    }
}
