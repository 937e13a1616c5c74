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
 * Times of file systems as the host counts them, and back.
 *
 * <p>The library sets some times to others, and calls it a success: one before 1970 with a fraction of a second becomes
 * 1970, and one after 2262 becomes 2262. Disks and archives have limits of their own and do the same. So the first are
 * set to the second below, the others by other means; what may be out of reach is read again, and refused if it is not
 * what was set.
 */
final class Times {
    private static final long MILLIS = 1000;

    /** The coarsest storages keep even seconds. */
    private static final long COARSEST = 2 * MILLIS;

    /** Every storage keeps the times from 1970 up to here. */
    private static final long COMMON_END = Integer.MAX_VALUE * MILLIS;

    /** What a zip archive keeps are seconds in 32 bits. */
    private static final long ARCHIVE_END = (1L << 32) * MILLIS;

    /** The library counts nanoseconds in 64 bits. */
    private static final long LAST_OF_LIBRARY = Long.MAX_VALUE / 1_000_000;

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

    /**
     * Sets the time of a file or folder.
     *
     * @param old what it is, which stays if the new one is refused
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
     * Gives a copy the times of what was copied. Only the time of last modification is promised; the others are set as
     * far as they can be.
     *
     * @throws UnsupportedOperationException if the storage of the copy cannot hold it
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

    /** To the last digit, except after 2262, when the library can set no more than milliseconds. */
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

    /** An archive holds the time that was set until it is closed, and another one afterwards. */
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
     * Sets a time without opening the file, if it is one that every storage keeps.
     *
     * @return false if that cannot be done; nothing has happened then
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
     * The platform's other function takes times after 2262 and opens nothing; but it takes none before 1970, and the
     * name of a file that is no text would become that of another.
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
