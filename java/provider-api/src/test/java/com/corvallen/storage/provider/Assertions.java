package com.corvallen.storage.provider;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import org.junit.jupiter.api.function.Executable;

/** Assertions that the tests of this package share. */
final class Assertions {
    private Assertions() {}

    static ProviderException assertFails(ErrorCode code, Executable action) {
        ProviderException failure = assertThrows(ProviderException.class, action);
        assertEquals(code, failure.getErrorCode(), failure.getMessage());
        return failure;
    }
}
