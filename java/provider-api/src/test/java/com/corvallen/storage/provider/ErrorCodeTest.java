package com.corvallen.storage.provider;

import static org.junit.jupiter.api.Assertions.assertEquals;

import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

class ErrorCodeTest {
    @ParameterizedTest
    @CsvSource({
        "UNKNOWN, 0",
        "NOT_FOUND, 1",
        "ALREADY_EXISTS, 2",
        "ACCESS_DENIED, 3",
        "NOT_A_FILE, 4",
        "NOT_A_FOLDER, 5",
        "FOLDER_NOT_EMPTY, 6",
        "NOT_SUPPORTED, 7",
        "INVALID_LOCATION, 8",
        "STORAGE_FULL, 9",
        "IN_USE, 10",
        "UNAVAILABLE, 11"
    })
    void numbersAreThoseOfTheWire(ErrorCode code, int number) {
        assertEquals(number, code.getNumber());
    }

    @Test
    void thereAreTwelve() {
        assertEquals(12, ErrorCode.values().length);
    }
}
