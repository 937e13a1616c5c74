package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code getFileAttributes}. */
public abstract class GetFileAttributesContract extends OperationContract {
    /** Storages may keep times as coarse as two seconds, and need not agree with this machine's clock. */
    private static final long TOLERANCE = 60_000;

    protected GetFileAttributesContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void sizeIsInBytes() throws Exception {
        assertEquals(0, provider.getFileAttributes(file("", "empty")).getSize());
        assertEquals(6, provider.getFileAttributes(file("hällo", "a")).getSize());
    }

    @Test
    void timeOfANewFileIsNow() throws Exception {
        long now = System.currentTimeMillis();
        assertEquals(now, provider.getFileAttributes(file("x", "a")).getLastModified(), TOLERANCE);
    }

    @Test
    void fileThatMayBeWrittenIsWritable() throws Exception {
        assertTrue(provider.getFileAttributes(file("x", "a")).isWritable());
    }

    @Test
    void missingIsNotFound() throws Exception {
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.getFileAttributes(a));
    }

    @Test
    void nothingIsBelowAFile() throws Exception {
        file("x", "a");
        StorageURI b = at("a", "b");
        assertFails(ErrorCode.NOT_FOUND, b, () -> provider.getFileAttributes(b));
    }

    @Test
    void folderIsNotAFile() throws Exception {
        StorageURI a = folder("a");
        assertFails(ErrorCode.NOT_A_FILE, a, () -> provider.getFileAttributes(a));
        assertFails(ErrorCode.NOT_A_FILE, at(), () -> provider.getFileAttributes(at()));
    }
}
