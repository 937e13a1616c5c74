package com.corvallen.storage.backend.nio;

import java.nio.file.FileSystemException;

/** Someone else uses a file in a way that rules out the operation. */
final class InUseException extends FileSystemException {
    private static final long serialVersionUID = 1L;

    InUseException(String file, String why) {
        super(file, null, why);
    }
}
