package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertSame;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.params.provider.Arguments.arguments;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.LastFailure;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.channels.OverlappingFileLockException;
import java.nio.file.AccessDeniedException;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.FileSystemException;
import java.nio.file.FileSystemLoopException;
import java.nio.file.InvalidPathException;
import java.nio.file.NoSuchFileException;
import java.nio.file.ReadOnlyFileSystemException;
import java.util.stream.Stream;
import java.util.zip.ZipException;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.Arguments;
import org.junit.jupiter.params.provider.EnumSource;
import org.junit.jupiter.params.provider.MethodSource;

class ReasonsTest {
    private static final StorageURI PLACE = new StorageURI("java:///f");

    static Stream<Arguments> reasons() {
        return Stream.of(
                arguments(words("Too many levels of symbolic links or unable to access it"), "too many symbolic links"),
                arguments(words("File name too long"), "file name too long"),
                arguments(words("Read-only file system"), "read-only file system"),
                arguments(words("Device or resource busy"), "device or resource busy"),
                arguments(new IOException("No space left on device"), "no space left on device"),
                arguments(new UncheckedIOException(new IOException("File too large")), "file too large"),
                arguments(new ZipException("zip END header not found"), "zip END header not found"),
                arguments(new AccessDeniedException("/f"), "permission denied"),
                arguments(new AccessDeniedException("/f", null, "A link leads out"), "a link leads out"),
                arguments(new ReadOnlyFileSystemException(), "read-only file system"),
                arguments(new FileSystemLoopException("/f"), "too many symbolic links"),
                arguments(new OverlappingFileLockException(), "this process has locked it"),
                arguments(new AtomicMoveNotSupportedException("/f", "/g", "Invalid cross-device link"),
                        "the target is on another disk"),
                arguments(new InvalidPathException("f\0", "Nul character not allowed", 1), "nul character not allowed"),
                arguments(new UnsupportedOperationException("EIO is not for you"), "EIO is not for you"),
                arguments(new IllegalStateException("odd"), "java.lang.IllegalStateException: odd"));
    }

    private static FileSystemException words(String reason) {
        return new FileSystemException("/f", null, reason);
    }

    @ParameterizedTest
    @MethodSource("reasons")
    void reasonIsAPartOfASentence(Exception exception, String reason) {
        assertEquals(reason, Reasons.of(exception));
    }

    @ParameterizedTest
    @EnumSource(
            value = ErrorCode.class,
            names = {"NOT_FOUND", "ALREADY_EXISTS", "NOT_A_FILE", "NOT_A_FOLDER", "FOLDER_NOT_EMPTY"})
    void codeThatSaysItAllHasNone(ErrorCode code) {
        assertNull(Reasons.beside(code, words("Whatever")));
    }

    @Test
    void wordsChosenForTheCaseAreKept() {
        NoSuchFileException exception = new NoSuchFileException("/f", null, "the other disk is gone");
        assertEquals("the other disk is gone", Reasons.beside(ErrorCode.NOT_FOUND, exception));
    }

    @Test
    void failureCarriesItAfterCodeAndLocation() {
        IOException cause = words("File name too long");
        ProviderException failure = failureOf(cause);
        assertEquals("INVALID_LOCATION: java:///f: file name too long", failure.getMessage());
        assertSame(cause, failure.getCause());
        failure.getErrorCodeNumber();
        assertEquals("file name too long", LastFailure.take().getReason());
    }

    @Test
    void failureWithoutOneIsCodeAndLocation() {
        assertEquals("NOT_FOUND: java:///f", failureOf(new NoSuchFileException("/f")).getMessage());
    }

    private static ProviderException failureOf(IOException exception) {
        return assertThrows(
                ProviderException.class,
                () -> Failures.translated(PLACE, (Failures.Action) () -> {
                    throw exception;
                }));
    }
}
