package com.corvallen.storage.backend.nio;

import java.io.File;
import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.FileSystems;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributeView;
import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.FileTime;
import java.time.Instant;
import java.util.concurrent.TimeUnit;

/**
 * Converts times between file systems and the host.
 *
 * <p>Java silently changes some times when setting them: a time before 1970 with a fraction of a second becomes 1970,
 * and one after 2262 becomes 2262. Disks and archives have limits too. So a time before 1970 is rounded down to the
 * second, a time after 2262 is set by another function, and any time that may be out of reach is read back, and refused
 * if it differs.
 */
final class Times {
    private static final long MILLIS = 1000;

    /** The coarsest storages keep only even seconds. */
    private static final long COARSEST = 2 * MILLIS;

    /** Every storage can hold times from 1970 up to here. */
    private static final long COMMON_END = Integer.MAX_VALUE * MILLIS;

    /** A zip archive holds seconds in 32 bits. */
    private static final long ARCHIVE_END = (1L << 32) * MILLIS;

    /** Java counts nanoseconds in 64 bits. */
    private static final long LAST_OF_LIBRARY = Long.MAX_VALUE / 1_000_000;

    private Times() {}

    /**
     * Returns milliseconds since 1970, rounded down: never later than the time itself, even before 1970. {@link
     * FileTime#toMillis} rounds towards 1970 for some times and down for others.
     */
    static long millisOf(FileTime time) {
        Instant instant = time.toInstant();
        if (Math.abs(instant.getEpochSecond()) >= Long.MAX_VALUE / MILLIS) {
            return time.toMillis();
        }
        return instant.toEpochMilli();
    }

    /**
     * Sets the time of a file or folder.
     *
     * @param old the present time, which is restored if the new one is refused
     * @throws UnsupportedOperationException if the storage cannot hold it
     */
    static void set(Path path, FileTime old, long millis) throws IOException {
        requireReach(path.getFileSystem(), millis);
        put(path, millis);
        if (isCommon(millis) || isHeld(path, millis)) {
            return;
        }
        UnsupportedOperationException refusal = refusal(millis);
        try {
            putBack(path, old);
        } catch (IOException e) {
            refusal.addSuppressed(e);
        }
        throw refusal;
    }

    /**
     * Gives a copy the times of its source. Only the time of last modification is guaranteed; the others are set if
     * possible.
     *
     * @throws UnsupportedOperationException if the copy's storage cannot hold it
     */
    static void copy(BasicFileAttributes from, Path to) throws IOException {
        long millis = millisOf(from.lastModifiedTime());
        requireReach(to.getFileSystem(), millis);
        Files.getFileAttributeView(to, BasicFileAttributeView.class, LinkOption.NOFOLLOW_LINKS)
                .setTimes(
                        settable(from.lastModifiedTime()),
                        settableOrNull(from.lastAccessTime()),
                        settableOrNull(from.creationTime()));
        if (isCommon(millis) || isHeld(to, millis)) {
            return;
        }
        put(to, millis);
        if (!isHeld(to, millis)) {
            throw refusal(millis);
        }
    }

    /** Restores every digit, except after 2262, where Java can only set milliseconds. */
    private static void putBack(Path path, FileTime old) throws IOException {
        if (millisOf(old) > LAST_OF_LIBRARY) {
            put(path, millisOf(old));
        } else {
            Files.setLastModifiedTime(path, settable(old));
        }
    }

    private static boolean isCommon(long millis) {
        return millis >= 0 && millis < COMMON_END;
    }

    /** An open archive holds any time, but after closing another one is there. */
    private static void requireReach(FileSystem system, long millis) {
        if (FileSystemTraits.keepsTimesIn32Bits(system) && (millis < 0 || millis >= ARCHIVE_END)) {
            throw refusal(millis);
        }
    }

    private static boolean isHeld(Path path, long millis) throws IOException {
        long held = millisOf(Files.getLastModifiedTime(path));
        return held <= millis && held > millis - COARSEST;
    }

    private static UnsupportedOperationException refusal(long millis) {
        return new UnsupportedOperationException("this storage cannot hold the time " + FileTime.fromMillis(millis));
    }

    /**
     * Sets a time without opening the file, if every storage can hold that time.
     *
     * @return false if that is not possible; nothing has changed then
     */
    static boolean setUnopened(Path path, long millis) {
        return isCommon(millis) && putByName(path, millis);
    }

    private static void put(Path path, long millis) throws IOException {
        if (!putByName(path, millis)) {
            Files.setLastModifiedTime(path, settable(FileTime.fromMillis(millis)));
        }
    }

    /**
     * This function takes times after 2262 and opens nothing. But it takes no times before 1970, and would set another
     * file's time if the name is not text.
     */
    private static boolean putByName(Path path, long millis) {
        if (millis < 0 || !path.getFileSystem().equals(FileSystems.getDefault())) {
            return false;
        }
        File file = path.toFile();
        return file.toPath().equals(path) && file.setLastModified(millis);
    }

    private static FileTime settable(FileTime time) {
        long millis = millisOf(time);
        return millis < 0 ? FileTime.from(Math.floorDiv(millis, MILLIS), TimeUnit.SECONDS) : time;
    }

    private static FileTime settableOrNull(FileTime time) {
        return isCommon(millisOf(time)) ? time : null;
    }
}
