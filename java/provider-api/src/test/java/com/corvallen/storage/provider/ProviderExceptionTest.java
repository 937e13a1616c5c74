package com.corvallen.storage.provider;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertSame;

import java.io.IOException;
import org.junit.jupiter.api.Test;

class ProviderExceptionTest {
    private static final StorageURI PLACE = new StorageURI("java://m/a");

    @Test
    void codeAndLocationAreKept() {
        ProviderException e = new ProviderException(ErrorCode.NOT_SUPPORTED, PLACE);
        assertEquals(ErrorCode.NOT_SUPPORTED, e.getErrorCode());
        assertEquals(7, e.getErrorCodeNumber());
        assertEquals("java://m/a", e.getLocationString());
        assertEquals("NOT_SUPPORTED: java://m/a", e.getMessage());
    }

    @Test
    void messageAndCauseAreKept() {
        IOException cause = new IOException();
        ProviderException e = new ProviderException(ErrorCode.IN_USE, PLACE, "busy", cause);
        assertEquals("busy", e.getMessage());
        assertSame(cause, e.getCause());
    }

    @Test
    void locationMayBeNull() {
        ProviderException e = new ProviderException(ErrorCode.UNAVAILABLE, null);
        assertNull(e.getLocationString());
        assertEquals("UNAVAILABLE", e.getMessage());
    }

    @Test
    void nullCodeCountsAsUnknown() {
        ProviderException e = new ProviderException(null, PLACE, null);
        assertEquals(0, e.getErrorCodeNumber());
        assertEquals("UNKNOWN: java://m/a", e.getMessage());
    }

    @Test
    void textThatIsNoLocationIsReportedAsItIs() {
        assertEquals("%", new ProviderException(ErrorCode.INVALID_LOCATION, new StorageURI("%")).getLocationString());
    }

    @Test
    void subclassReportsThroughTheSameGetters() {
        class QuotaExceeded extends ProviderException {
            private static final long serialVersionUID = 1L;

            QuotaExceeded(StorageURI location) {
                super(ErrorCode.STORAGE_FULL, location, "quota");
            }
        }
        assertEquals(9, new QuotaExceeded(PLACE).getErrorCodeNumber());
    }
}
