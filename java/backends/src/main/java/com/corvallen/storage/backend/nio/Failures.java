package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.FileSystemException;
import java.nio.file.Path;

/** Runs operations, and turns exceptions of file systems into ProviderException. */
final class Failures {
    private Failures() {}

    /** Something to do on a file system. */
    @FunctionalInterface
    interface Action {
        void run() throws IOException, ProviderException;
    }

    /** Something to find out from a file system. */
    @FunctionalInterface
    interface Query<T> {
        T run() throws IOException, ProviderException;
    }

    static <T> T translated(StorageURI location, Query<T> query) throws ProviderException {
        try {
            return query.run();
        } catch (IOException | RuntimeException e) {
            throw failure(e, location);
        }
    }

    static void translated(StorageURI location, Action action) throws ProviderException {
        try {
            action.run();
        } catch (IOException | RuntimeException e) {
            throw failure(e, location);
        }
    }

    /** As translated, for an operation with two locations: reports the one that the failure concerns. */
    static void translatedMove(Entry source, Entry target, Action action) throws ProviderException {
        try {
            action.run();
        } catch (IOException | RuntimeException e) {
            throw failure(e, concernsTarget(e, source, target) ? target.location : source.location);
        }
    }

    /** Returns a failure whose message is the location and what is wrong with it. */
    static ProviderException of(ErrorCode code, StorageURI location, String what) {
        return new ProviderException(code, location, location + " " + what);
    }

    private static ProviderException failure(Exception e, StorageURI location) {
        ErrorCode code = ErrorTable.codeOf(e);
        String reason = Reasons.beside(code, e);
        String message = reason == null ? null : code + ": " + location + ": " + reason;
        return new ProviderException(code, location, message, e);
    }

    private static boolean concernsTarget(Exception e, Entry source, Entry target) {
        if (ErrorTable.codeOf(e) == ErrorCode.STORAGE_FULL) {
            return true;
        }
        String file = e instanceof FileSystemException ? ((FileSystemException) e).getFile() : null;
        if (file == null || file.startsWith(source.path.toString())) {
            return false;
        }
        // Until a move is complete, what it writes is beside the target.
        Path parent = target.path.getParent();
        return parent != null && file.startsWith(parent.toString());
    }
}
