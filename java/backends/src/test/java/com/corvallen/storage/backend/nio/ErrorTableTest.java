package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.params.provider.Arguments.arguments;

import com.corvallen.storage.provider.ErrorCode;
import java.io.IOException;
import java.io.InterruptedIOException;
import java.io.UncheckedIOException;
import java.nio.channels.ClosedByInterruptException;
import java.nio.channels.ClosedChannelException;
import java.nio.channels.NonReadableChannelException;
import java.nio.channels.NonWritableChannelException;
import java.nio.channels.OverlappingFileLockException;
import java.nio.file.AccessDeniedException;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.ClosedDirectoryStreamException;
import java.nio.file.ClosedFileSystemException;
import java.nio.file.ClosedWatchServiceException;
import java.nio.file.DirectoryIteratorException;
import java.nio.file.DirectoryNotEmptyException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileSystemException;
import java.nio.file.FileSystemLoopException;
import java.nio.file.FileSystemNotFoundException;
import java.nio.file.InvalidPathException;
import java.nio.file.NoSuchFileException;
import java.nio.file.NotDirectoryException;
import java.nio.file.NotLinkException;
import java.nio.file.ProviderNotFoundException;
import java.nio.file.ReadOnlyFileSystemException;
import java.util.Set;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import java.util.zip.ZipException;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.Arguments;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.MethodSource;

class ErrorTableTest {
    static Stream<Arguments> classes() {
        return Stream.of(
                arguments(new NoSuchFileException("f"), ErrorCode.NOT_FOUND),
                arguments(new FileAlreadyExistsException("f"), ErrorCode.ALREADY_EXISTS),
                arguments(new DirectoryNotEmptyException("f"), ErrorCode.FOLDER_NOT_EMPTY),
                arguments(new AccessDeniedException("f"), ErrorCode.ACCESS_DENIED),
                arguments(new NotDirectoryException("f"), ErrorCode.NOT_A_FOLDER),
                arguments(new NotLinkException("f"), ErrorCode.INVALID_LOCATION),
                arguments(new FileSystemLoopException("f"), ErrorCode.INVALID_LOCATION),
                arguments(new AtomicMoveNotSupportedException("f", "g", ""), ErrorCode.NOT_SUPPORTED),
                arguments(new ReadOnlyFileSystemException(), ErrorCode.ACCESS_DENIED),
                arguments(new NonWritableChannelException(), ErrorCode.ACCESS_DENIED),
                arguments(new NonReadableChannelException(), ErrorCode.ACCESS_DENIED),
                arguments(new SecurityException(), ErrorCode.ACCESS_DENIED),
                arguments(new OverlappingFileLockException(), ErrorCode.IN_USE),
                arguments(new InUseException("f", "changed"), ErrorCode.IN_USE),
                arguments(new ClosedFileSystemException(), ErrorCode.UNAVAILABLE),
                arguments(new ClosedDirectoryStreamException(), ErrorCode.UNAVAILABLE),
                arguments(new ClosedWatchServiceException(), ErrorCode.UNAVAILABLE),
                arguments(new ClosedChannelException(), ErrorCode.UNAVAILABLE),
                arguments(new InterruptedIOException(), ErrorCode.UNAVAILABLE),
                arguments(new FileSystemNotFoundException(), ErrorCode.UNAVAILABLE),
                arguments(new ProviderNotFoundException(), ErrorCode.UNAVAILABLE),
                arguments(new ZipException(), ErrorCode.UNAVAILABLE),
                arguments(new InvalidPathException("f", ""), ErrorCode.INVALID_LOCATION),
                arguments(new UnsupportedOperationException(), ErrorCode.NOT_SUPPORTED));
    }

    @ParameterizedTest
    @MethodSource("classes")
    void classDecides(Exception exception, ErrorCode code) {
        assertEquals(code, ErrorTable.codeOf(exception));
    }

    @Test
    void everyRowOfClassesIsTested() {
        Set<Class<?>> tested = classes().map(row -> row.get()[0].getClass()).collect(Collectors.toSet());
        Set<Class<?>> rows =
                ErrorTable.CLASSES.stream().map(row -> (Class<?>) row.getKey()).collect(Collectors.toSet());
        assertEquals(rows, tested);
        assertEquals(rows.size(), ErrorTable.CLASSES.size());
    }

    @Test
    void noRowIsHiddenByAnEarlierOne() {
        for (int late = 0; late < ErrorTable.CLASSES.size(); late++) {
            for (int early = 0; early < late; early++) {
                Class<?> earlier = ErrorTable.CLASSES.get(early).getKey();
                Class<?> later = ErrorTable.CLASSES.get(late).getKey();
                assertEquals(false, earlier.isAssignableFrom(later), earlier + " hides " + later);
            }
        }
    }

    @ParameterizedTest
    @CsvSource({
        "No space left on device, STORAGE_FULL",
        "Disk quota exceeded, STORAGE_FULL",
        "File too large, STORAGE_FULL",
        "out of disk space, STORAGE_FULL",
        "There is not enough space on the disk, STORAGE_FULL",
        "Read-only file system, ACCESS_DENIED",
        "Operation not permitted, ACCESS_DENIED",
        "Permission denied, ACCESS_DENIED",
        "Is a directory, NOT_A_FILE",
        "Not a directory, NOT_A_FOLDER",
        "Directory not empty, FOLDER_NOT_EMPTY",
        "File exists, ALREADY_EXISTS",
        "No such file or directory, NOT_FOUND",
        "Text file busy, IN_USE",
        "Device or resource busy, IN_USE",
        "The file is being used by another process, IN_USE",
        "is open exclusively, IN_USE",
        "File name too long, INVALID_LOCATION",
        "Too many levels of symbolic links, INVALID_LOCATION",
        "Invalid argument, INVALID_LOCATION",
        "Invalid cross-device link, NOT_SUPPORTED",
        "Operation not supported, NOT_SUPPORTED",
        "Too many links, NOT_SUPPORTED",
        "Too many open files, UNAVAILABLE",
        "Input/output error, UNAVAILABLE",
        "Stale file handle, UNAVAILABLE",
        "Transport endpoint is not connected, UNAVAILABLE",
        "No such device, UNAVAILABLE",
        "Mount point not found, UNAVAILABLE",
        "Host is down, UNAVAILABLE",
        "Connection timed out, UNAVAILABLE",
        "Something else, UNKNOWN"
    })
    void reasonDecidesWhereTheClassDoesNot(String reason, ErrorCode code) {
        assertEquals(code, ErrorTable.codeOf(new FileSystemException("f", null, reason)));
        assertEquals(code, ErrorTable.codeOf(new IOException(reason)));
        assertEquals(code, ErrorTable.codeOf(new UncheckedIOException(new IOException(reason))));
    }

    @Test
    void everyRowOfReasonsIsTested() throws NoSuchMethodException {
        String[] tested = ErrorTableTest.class
                .getDeclaredMethod("reasonDecidesWhereTheClassDoesNot", String.class, ErrorCode.class)
                .getAnnotation(CsvSource.class)
                .value();
        for (var row : ErrorTable.REASONS) {
            long rows = Stream.of(tested).filter(line -> line.toLowerCase().contains(row.getKey())).count();
            assertEquals(1, rows, row.getKey());
        }
    }

    @Test
    void nameOfAFileIsNoReason() {
        FileSystemException exception = new FileSystemException("/No space left on device", "/File exists", "odd");
        assertEquals(ErrorCode.UNKNOWN, ErrorTable.codeOf(exception));
    }

    @Test
    void reasonMayBeMissing() {
        assertEquals(ErrorCode.UNKNOWN, ErrorTable.codeOf(new FileSystemException("f")));
        assertEquals(ErrorCode.UNKNOWN, ErrorTable.codeOf(new IOException()));
    }

    @Test
    void subclassCountsAsItsRow() {
        assertEquals(ErrorCode.UNAVAILABLE, ErrorTable.codeOf(new ClosedByInterruptException()));
    }

    @Test
    void wrappedExceptionsAreUnwrapped() {
        assertEquals(
                ErrorCode.ACCESS_DENIED,
                ErrorTable.codeOf(new DirectoryIteratorException(new AccessDeniedException("f"))));
    }

    @Test
    void otherExceptionsAreUnknown() {
        assertEquals(ErrorCode.UNKNOWN, ErrorTable.codeOf(new IllegalStateException("Permission denied")));
    }
}
