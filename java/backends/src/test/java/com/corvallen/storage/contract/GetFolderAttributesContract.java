package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code getFolderAttributes}. */
public abstract class GetFolderAttributesContract extends OperationContract {
    /** Storages may keep times as coarse as two seconds, and need not agree with this machine's clock. */
    private static final long TOLERANCE = 60_000;

    protected GetFolderAttributesContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void timeOfANewFolderIsNow() throws Exception {
        long now = System.currentTimeMillis();
        assertEquals(now, provider.getFolderAttributes(folder("a")).getLastModified(), TOLERANCE);
    }

    @Test
    void folderThatMayBeWrittenIsWritable() throws Exception {
        assertTrue(provider.getFolderAttributes(folder("a")).isWritable());
    }

    @Test
    void rootHasAttributes() throws Exception {
        assertTrue(provider.getFolderAttributes(at()).isWritable());
    }

    @Test
    void missingIsNotFound() throws Exception {
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.getFolderAttributes(a));
    }

    @Test
    void fileIsNotAFolder() throws Exception {
        StorageURI a = file("x", "a");
        assertFails(ErrorCode.NOT_A_FOLDER, a, () -> provider.getFolderAttributes(a));
    }
}
