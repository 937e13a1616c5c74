package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.FileSystemException;
import java.nio.file.Path;

/** Runs operations and turns what the file system throws into what the host understands. */
final class Failures {
    private Failures() {}

    static <T> T translated(StorageURI location, IoQuery<T> query) throws ProviderException {
        try {
            return query.run();
        } catch (IOException | RuntimeException e) {
            throw failure(e, location);
        }
    }

    static void translated(StorageURI location, IoAction action) throws ProviderException {
        try {
            action.run();
        } catch (IOException | RuntimeException e) {
            throw failure(e, location);
        }
    }

    /** As translated, for an operation with two locations: reports the one that the file system complains about. */
    static void translatedMove(Entry source, Entry target, IoAction action) throws ProviderException {
        try {
            action.run();
        } catch (IOException | RuntimeException e) {
            throw failure(e, concernsTarget(e, source, target) ? target.location : source.location);
        }
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
        // What a move writes stands beside the target until it is complete.
        Path parent = target.path.getParent();
        return parent != null && file.startsWith(parent.toString());
    }
}
