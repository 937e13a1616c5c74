package com.corvallen.storage.backend.nio;

import com.corvallen.storage.contract.ProviderContract;
import com.corvallen.storage.contract.StorageUnderTest;

/** A folder of the default file system, without a mount. */
class DefaultFileSystemContractTest extends ProviderContract {
    @Override
    protected StorageUnderTest open() throws Exception {
        return NioStorage.ofDefaultFileSystem();
    }
}
