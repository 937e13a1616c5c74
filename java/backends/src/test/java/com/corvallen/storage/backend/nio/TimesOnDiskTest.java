package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.FileTime;
import java.util.concurrent.TimeUnit;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.ValueSource;

/** Times that Java silently changes when setting them, on a disk, in an archive, and between the two. */
class TimesOnDiskTest extends NioTestCase {
    private static final long YEAR_1 = -62_135_596_800_000L;
    private static final long YEAR_1960 = -315_619_200_000L;
    private static final long YEAR_2300 = 10_413_792_000_000L;

    private NioStorage other;

    TimesOnDiskTest() {
        super(NioStorage::ofFolder);
    }

    @AfterEach
    void close() throws Exception {
        if (other != null) {
            other.tearDown();
        }
    }

    @ParameterizedTest
    @CsvSource({
        "-1500,-2000", "-1000,-1000", "-1,-1000", "-315619199001,-315619200000", "10413792000123,10413792000123"
    })
    void timeIsTheOneThatWasSetOrTheSecondBelow(long set, long expected) throws Exception {
        StorageURI a = file("x", "a");
        provider.setLastModified(a, set);
        assertEquals(expected, provider.getFileAttributes(a).getLastModified());
        StorageURI folder = folder("folder");
        provider.setLastModified(folder, set);
        assertEquals(expected, provider.getFolderAttributes(folder).getLastModified());
    }

    @Test
    void refusedTimeLeavesTheOldOneToTheNanosecond() throws Exception {
        StorageURI a = file("x", "a");
        FileTime old = FileTime.from(1_700_000_000_123_456_789L, TimeUnit.NANOSECONDS);
        Files.setLastModifiedTime(path("a"), old);
        assertFails(ErrorCode.NOT_SUPPORTED, a, () -> provider.setLastModified(a, YEAR_1));
        assertEquals(old, Files.getLastModifiedTime(path("a")));
    }

    /** Java cannot set a time after 2262. */
    @Test
    void refusedTimeLeavesAFarOne() throws Exception {
        StorageURI a = file("x", "a");
        provider.setLastModified(a, YEAR_2300);
        assertFails(ErrorCode.NOT_SUPPORTED, a, () -> provider.setLastModified(a, YEAR_1));
        assertEquals(YEAR_2300, provider.getFileAttributes(a).getLastModified());
    }

    @ParameterizedTest
    @ValueSource(longs = {YEAR_1, YEAR_1960, -1, 4_294_967_296_000L, YEAR_2300})
    void timeThatAnArchiveWouldForgetIsRefused(long time) throws Exception {
        other = NioStorage.ofArchive();
        other.write(other.at("a"), "x");
        StorageURI a = other.at("a");
        assertFails(ErrorCode.NOT_SUPPORTED, a, () -> other.provider().setLastModified(a, time));
    }

    private static void touch(Path path, String time) throws IOException, InterruptedException {
        Process touch = new ProcessBuilder("touch", "-h", "-d", time, path.toString()).inheritIO().start();
        assertTrue(touch.waitFor(60, TimeUnit.SECONDS));
        assertEquals(0, touch.exitValue());
    }

    @ParameterizedTest
    @CsvSource({"@-1.5,-2000", "2300-01-01T00:00:00Z,10413792000000", "1960-01-01T00:00:00Z,-315619200000"})
    void fileAndFolderKeepSuchATimeOnTheirWayToAnotherDisk(String time, long expected) throws Exception {
        other = OtherDisk.open();
        folder("folder");
        file("x", "folder", "file");
        touch(path("folder", "file"), time);
        touch(path("folder"), time);
        provider.moveFolder(at("folder"), other.at("folder"), /* replace= */ false);
        assertEquals(expected, provider.getFolderAttributes(other.at("folder")).getLastModified());
        assertEquals(expected, provider.getFileAttributes(other.at("folder", "file")).getLastModified());
        provider.moveFile(other.at("folder", "file"), at("file"), /* replace= */ false);
        assertEquals(expected, provider.getFileAttributes(at("file")).getLastModified());
    }

    @Test
    void fileWithATimeThatTheTargetCannotHoldStays() throws Exception {
        other = NioStorage.ofArchive();
        folder("folder");
        StorageURI a = file("x", "folder", "a");
        touch(path("folder", "a"), "1960-01-01T00:00:00Z");
        assertFails(ErrorCode.NOT_SUPPORTED, a, () -> provider.moveFile(a, other.at("b"), /* replace= */ false));
        assertFails(
                ErrorCode.NOT_SUPPORTED,
                at("folder"),
                () -> provider.moveFolder(at("folder"), other.at("b"), /* replace= */ false));
        assertFile("x", a);
        assertEquals(0, other.countEntries(other.at()));
    }
}
