package com.corvallen.storage.contract;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code dispose}. */
public abstract class DisposeContract extends OperationContract {
    protected DisposeContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void unusedProviderIsDisposedOf() {
        provider.dispose();
    }

    @Test
    void operationsAfterwardsAreUnavailable() throws Exception {
        StorageURI a = file("x", "a");
        provider.dispose();
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.fileExists(a));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.folderExists(a));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.createFolder(a));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.removeFile(a));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.moveFile(a, at("b"), true));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.getFileAttributes(a));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.setLastModified(a, 0));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.listFolder(a));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.getChannel(a, true, true, false));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.getReadOnlyChannel(a));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.getExtendedAttributes(a));
        assertFails(ErrorCode.UNAVAILABLE, a, () -> provider.getProviderStorageInfo(a));
    }
}
