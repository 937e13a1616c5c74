package com.corvallen.storage.backend.nio;

import static java.util.Map.entry;

import com.corvallen.storage.provider.ErrorCode;
import java.nio.channels.ClosedChannelException;
import java.nio.channels.NonReadableChannelException;
import java.nio.channels.NonWritableChannelException;
import java.nio.channels.OverlappingFileLockException;
import java.nio.file.AccessDeniedException;
import java.nio.file.AtomicMoveNotSupportedException;
import java.nio.file.ClosedFileSystemException;
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
import java.util.EnumSet;
import java.util.List;
import java.util.Locale;
import java.util.Map.Entry;
import java.util.Set;

/** Why a file system refused, in words for people: without file names, and as part of a sentence. */
final class Reasons {
    /** The words for exceptions whose own words are missing or poor. */
    private static final List<Entry<Class<? extends Exception>, String>> CLASSES = List.of(
            entry(NoSuchFileException.class, "no such file or folder"),
            entry(FileAlreadyExistsException.class, "it exists already"),
            entry(DirectoryNotEmptyException.class, "the folder is not empty"),
            entry(NotDirectoryException.class, "it is not a folder"),
            entry(AccessDeniedException.class, "permission denied"),
            entry(NotLinkException.class, "it is not a symbolic link"),
            entry(FileSystemLoopException.class, "too many symbolic links"),
            entry(AtomicMoveNotSupportedException.class, "the target is on another disk"),
            entry(ReadOnlyFileSystemException.class, "read-only file system"),
            entry(NonWritableChannelException.class, "it is open for reading only"),
            entry(NonReadableChannelException.class, "it is open for writing only"),
            entry(OverlappingFileLockException.class, "this process has locked it"),
            entry(ClosedFileSystemException.class, "the file system has been closed"),
            entry(ClosedChannelException.class, "it has been closed"));

    /** The first entry that the system's words begin with counts, in any letter case. */
    private static final List<Entry<String, String>> WORDS = List.of(
            entry("too many levels of symbolic links", "too many symbolic links"),
            entry("invalid cross-device link", "the target is on another disk"));

    /** These codes need no further words. */
    private static final Set<ErrorCode> SPEAKING = EnumSet.of(
            ErrorCode.NOT_FOUND,
            ErrorCode.ALREADY_EXISTS,
            ErrorCode.NOT_A_FILE,
            ErrorCode.NOT_A_FOLDER,
            ErrorCode.FOLDER_NOT_EMPTY);

    private Reasons() {}

    /** Returns what the exception adds to its code; null if nothing. */
    static String beside(ErrorCode code, Exception exception) {
        boolean saysAll = SPEAKING.contains(code) && !hasOwnWords(ErrorTable.unwrapped(exception));
        return saysAll ? null : of(exception);
    }

    /** Returns the reason; never null. */
    static String of(Exception exception) {
        Exception plain = ErrorTable.unwrapped(exception);
        if (hasOwnWords(plain)) {
            return begun(common(wordsOf(plain)));
        }
        for (Entry<Class<? extends Exception>, String> row : CLASSES) {
            if (row.getKey().isInstance(plain)) {
                return row.getValue();
            }
        }
        String words = wordsOf(plain);
        return words.isEmpty() ? plain.toString() : begun(common(words));
    }

    /**
     * The platform puts the system's words only in plain exceptions; words in an exception of a particular class come
     * from this back end.
     */
    private static boolean hasOwnWords(Exception exception) {
        return exception instanceof FileSystemException
                && exception.getClass() != FileSystemException.class
                && !ErrorTable.reasonOf(exception).isEmpty();
    }

    private static String wordsOf(Exception exception) {
        boolean speaks = exception instanceof UnsupportedOperationException
                || exception instanceof FileSystemNotFoundException
                || exception instanceof ProviderNotFoundException;
        if (exception instanceof InvalidPathException) {
            return ((InvalidPathException) exception).getReason();
        }
        if (speaks) {
            return exception.getMessage() == null ? "" : exception.getMessage();
        }
        return ErrorTable.reasonOf(exception);
    }

    private static String common(String words) {
        String lower = words.toLowerCase(Locale.ROOT);
        for (Entry<String, String> row : WORDS) {
            if (lower.startsWith(row.getKey())) {
                return row.getValue();
            }
        }
        return words;
    }

    /** Makes the words fit the middle of a sentence; a first word in capitals stays. */
    private static String begun(String words) {
        boolean acronym = words.length() > 1 && Character.isUpperCase(words.charAt(1));
        return acronym ? words : words.substring(0, 1).toLowerCase(Locale.ROOT) + words.substring(1);
    }
}
