package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** The cases of {@code setLastModified}. */
public abstract class SetLastModifiedContract extends OperationContract {
    /** The coarsest storages keep only even seconds. */
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

    /** Before 1970, with fractions, and at the ends of 32 and 64 bits of seconds, milliseconds and nanoseconds. */
    @ParameterizedTest
    @ValueSource(
            longs = {
                0, -1, -1000, -1500, -86_400_000L * 365 * 20 - 1, -2_147_483_648_000L, -2_147_483_649_000L,
                -20_000_000_000_000L, -62_135_596_800_000L, 2_147_483_647_999L, 2_147_483_648_000L, 4_294_967_295_000L,
                4_294_967_296_000L, 9_223_372_036_855L, 10_413_792_000_000L, 15_032_385_535_999L, 15_032_385_536_000L,
                253_402_300_800_001L, Long.MAX_VALUE / 1000, Long.MIN_VALUE / 1000, Long.MAX_VALUE, Long.MIN_VALUE
            })
    void timeIsHeldOrRefused(long time) throws Exception {
        StorageURI a = file("x", "a");
        provider.setLastModified(a, SOME_TIME);
        long before = provider.getFileAttributes(a).getLastModified();
        try {
            provider.setLastModified(a, time);
        } catch (ProviderException e) {
            assertEquals(ErrorCode.NOT_SUPPORTED, e.getErrorCode(), e.getMessage());
            assertEquals(before, provider.getFileAttributes(a).getLastModified());
            return;
        }
        long held = provider.getFileAttributes(a).getLastModified();
        assertTrue(held <= time && time - held < TOLERANCE, () -> time + " has become " + held);
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
