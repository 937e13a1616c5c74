package com.corvallen.storage.backend.nio;

import java.nio.file.attribute.FileTime;
import java.time.Instant;

/** Times of file systems as the host counts them. */
final class Times {
    private static final long MILLIS = 1000;

    private Times() {}

    /**
     * Returns milliseconds since 1970, rounded down: never later than the time itself, before 1970 too. {@link
     * FileTime#toMillis} rounds towards 1970 for some times and down for others.
     */
    static long millisOf(FileTime time) {
        Instant instant = time.toInstant();
        if (Math.abs(instant.getEpochSecond()) >= Long.MAX_VALUE / MILLIS) {
            return time.toMillis();
        }
        return instant.toEpochMilli();
    }
}
