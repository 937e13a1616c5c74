package com.corvallen.storage.backend.nio;

import static java.util.Map.entry;

import com.corvallen.storage.provider.ErrorCode;
import java.io.IOException;
import java.io.InterruptedIOException;
import java.io.UncheckedIOException;
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
import java.util.List;
import java.util.Locale;
import java.util.Map.Entry;
import java.util.zip.ZipException;

/**
 * The one place where exceptions of {@code java.nio.file} become error codes.
 *
 * <p>The class of the exception decides if it has only one meaning. A {@link FileSystemException} of no particular
 * class, or a plain {@link IOException}, says what happened only in the system's words, so those decide. Only English
 * words are known; in another language such a failure is UNKNOWN.
 */
final class ErrorTable {
    /** The first match counts, so a class comes before its superclasses. */
    static final List<Entry<Class<? extends Exception>, ErrorCode>> CLASSES = List.of(
            entry(NoSuchFileException.class, ErrorCode.NOT_FOUND),
            entry(FileAlreadyExistsException.class, ErrorCode.ALREADY_EXISTS),
            entry(DirectoryNotEmptyException.class, ErrorCode.FOLDER_NOT_EMPTY),
            entry(AccessDeniedException.class, ErrorCode.ACCESS_DENIED),
            entry(NotDirectoryException.class, ErrorCode.NOT_A_FOLDER),
            entry(NotLinkException.class, ErrorCode.INVALID_LOCATION),
            entry(FileSystemLoopException.class, ErrorCode.INVALID_LOCATION),
            entry(AtomicMoveNotSupportedException.class, ErrorCode.NOT_SUPPORTED),
            entry(ReadOnlyFileSystemException.class, ErrorCode.ACCESS_DENIED),
            entry(NonWritableChannelException.class, ErrorCode.ACCESS_DENIED),
            entry(NonReadableChannelException.class, ErrorCode.ACCESS_DENIED),
            entry(SecurityException.class, ErrorCode.ACCESS_DENIED),
            entry(OverlappingFileLockException.class, ErrorCode.IN_USE),
            entry(InUseException.class, ErrorCode.IN_USE),
            entry(ClosedFileSystemException.class, ErrorCode.UNAVAILABLE),
            entry(ClosedDirectoryStreamException.class, ErrorCode.UNAVAILABLE),
            entry(ClosedWatchServiceException.class, ErrorCode.UNAVAILABLE),
            entry(ClosedChannelException.class, ErrorCode.UNAVAILABLE),
            entry(InterruptedIOException.class, ErrorCode.UNAVAILABLE),
            entry(FileSystemNotFoundException.class, ErrorCode.UNAVAILABLE),
            entry(ProviderNotFoundException.class, ErrorCode.UNAVAILABLE),
            entry(ZipException.class, ErrorCode.UNAVAILABLE),
            entry(InvalidPathException.class, ErrorCode.INVALID_LOCATION),
            entry(UnsupportedOperationException.class, ErrorCode.NOT_SUPPORTED));

    /** The first text that occurs in the reason counts, in any letter case. */
    static final List<Entry<String, ErrorCode>> REASONS = List.of(
            entry("no space left on device", ErrorCode.STORAGE_FULL),
            entry("disk quota exceeded", ErrorCode.STORAGE_FULL),
            entry("file too large", ErrorCode.STORAGE_FULL),
            entry("out of disk space", ErrorCode.STORAGE_FULL),
            entry("not enough space on the disk", ErrorCode.STORAGE_FULL),
            entry("read-only file system", ErrorCode.ACCESS_DENIED),
            entry("operation not permitted", ErrorCode.ACCESS_DENIED),
            entry("permission denied", ErrorCode.ACCESS_DENIED),
            entry("is a directory", ErrorCode.NOT_A_FILE),
            entry("not a directory", ErrorCode.NOT_A_FOLDER),
            entry("directory not empty", ErrorCode.FOLDER_NOT_EMPTY),
            entry("file exists", ErrorCode.ALREADY_EXISTS),
            entry("no such file or directory", ErrorCode.NOT_FOUND),
            entry("text file busy", ErrorCode.IN_USE),
            entry("device or resource busy", ErrorCode.IN_USE),
            entry("being used by another process", ErrorCode.IN_USE),
            entry("is open exclusively", ErrorCode.IN_USE),
            entry("file name too long", ErrorCode.INVALID_LOCATION),
            entry("too many levels of symbolic links", ErrorCode.INVALID_LOCATION),
            entry("invalid argument", ErrorCode.INVALID_LOCATION),
            entry("invalid cross-device link", ErrorCode.NOT_SUPPORTED),
            entry("operation not supported", ErrorCode.NOT_SUPPORTED),
            entry("too many links", ErrorCode.NOT_SUPPORTED),
            entry("too many open files", ErrorCode.UNAVAILABLE),
            entry("input/output error", ErrorCode.UNAVAILABLE),
            entry("stale file handle", ErrorCode.UNAVAILABLE),
            entry("transport endpoint is not connected", ErrorCode.UNAVAILABLE),
            entry("no such device", ErrorCode.UNAVAILABLE),
            entry("mount point not found", ErrorCode.UNAVAILABLE),
            entry("host is down", ErrorCode.UNAVAILABLE),
            entry("connection timed out", ErrorCode.UNAVAILABLE));

    private ErrorTable() {}

    /** Returns the code for an exception, or UNKNOWN if no row fits. */
    static ErrorCode codeOf(Exception exception) {
        Exception plain = unwrapped(exception);
        for (Entry<Class<? extends Exception>, ErrorCode> row : CLASSES) {
            if (row.getKey().isInstance(plain)) {
                return row.getValue();
            }
        }
        return codeOfReason(reasonOf(plain));
    }

    /** Returns the exception that says what happened. */
    static Exception unwrapped(Exception exception) {
        boolean wraps = exception instanceof UncheckedIOException || exception instanceof DirectoryIteratorException;
        return wraps ? unwrapped((IOException) exception.getCause()) : exception;
    }

    private static ErrorCode codeOfReason(String reason) {
        String lower = reason.toLowerCase(Locale.ROOT);
        for (Entry<String, ErrorCode> row : REASONS) {
            if (lower.contains(row.getKey())) {
                return row.getValue();
            }
        }
        return ErrorCode.UNKNOWN;
    }

    /** Leaves out the file names in the message of a FileSystemException: they can contain any words. */
    static String reasonOf(Exception exception) {
        String reason = "";
        if (exception instanceof FileSystemException) {
            reason = ((FileSystemException) exception).getReason();
        } else if (exception instanceof IOException) {
            reason = exception.getMessage();
        }
        return reason == null ? "" : reason;
    }
}
