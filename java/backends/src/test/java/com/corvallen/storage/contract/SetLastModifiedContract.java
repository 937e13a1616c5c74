package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** The cases of {@code setLastModified}. */
public abstract class SetLastModifiedContract extends OperationContract {
    /** The coarsest storages keep even seconds. */
    private static final long TOLERANCE = 2000;

    private static final long SOME_TIME = 1_700_000_000_123L;

    protected SetLastModifiedContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @ParameterizedTest
    @ValueSource(longs = {SOME_TIME, 1_000_000_000_000L, 4_000_000_000_000L})
    void timeOfAFileIsSet(long time) throws Exception {
        StorageURI a = file("x", "a");
        provider.setLastModified(a, time);
        assertEquals(time, provider.getFileAttributes(a).getLastModified(), TOLERANCE);
        assertFile("x", a);
    }

    @Test
    void timeOfAFolderIsSet() throws Exception {
        StorageURI a = folder("a");
        file("x", "a", "child");
        provider.setLastModified(a, SOME_TIME);
        assertEquals(SOME_TIME, provider.getFolderAttributes(a).getLastModified(), TOLERANCE);
    }

    @Test
    void timeThatWasReadCanBeSet() throws Exception {
        StorageURI a = file("x", "a");
        provider.setLastModified(a, SOME_TIME);
        long read = provider.getFileAttributes(a).getLastModified();
        provider.setLastModified(a, read);
        assertEquals(read, provider.getFileAttributes(a).getLastModified());
    }

    @Test
    void missingIsNotFound() throws Exception {
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.setLastModified(a, SOME_TIME));
        assertMissing(a);
    }

    @Test
    void nothingIsBelowAFile() throws Exception {
        file("x", "a");
        StorageURI b = at("a", "b");
        assertFails(ErrorCode.NOT_FOUND, b, () -> provider.setLastModified(b, SOME_TIME));
    }
}
