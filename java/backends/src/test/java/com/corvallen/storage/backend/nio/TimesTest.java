package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;

import java.nio.file.attribute.FileTime;
import java.time.Instant;
import java.util.concurrent.TimeUnit;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

class TimesTest {
    @ParameterizedTest
    @CsvSource({"0,0", "999999,0", "1000000,1", "1999999,1", "-1,-1", "-1000000,-1", "-1000001,-2", "-1500000,-2"})
    void nanosecondsAreRoundedDown(long nanos, long millis) {
        assertEquals(millis, Times.millisOf(FileTime.from(nanos, TimeUnit.NANOSECONDS)));
        assertEquals(millis, Times.millisOf(FileTime.from(Instant.ofEpochSecond(0, nanos))));
    }

    @Test
    void timesOutOfReachAreTheFarthest() {
        assertEquals(Long.MAX_VALUE, Times.millisOf(FileTime.from(Long.MAX_VALUE, TimeUnit.DAYS)));
        assertEquals(Long.MIN_VALUE, Times.millisOf(FileTime.from(Long.MIN_VALUE, TimeUnit.DAYS)));
        assertEquals(Long.MAX_VALUE, Times.millisOf(FileTime.fromMillis(Long.MAX_VALUE)));
    }
}
