package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.Path;

/**
 * Finds room for what is unpacked from an archive or is to go into it: on the archive's own disk, which must have it in
 * the end, or in the folder for temporary files where nothing can be made beside the archive. The file is there by name
 * just between two calls of the system; one that a process left there by being killed in between is removed.
 */
final class ArchiveSpool {
    static final String PREFIX = ".storage-spool-";
    private static final int ATTEMPTS = 100;

    private ArchiveSpool() {}

    static FileChannel open(Path archive) throws IOException {
        try {
            return makeAt(HiddenNames.of(archive, PREFIX));
        } catch (FileSystemException e) {
            if (Files.isWritable(archive.getParent())) {
                throw e;
            }
            return makeAt(HiddenNames.beside(Path.of(System.getProperty("java.io.tmpdir"), PREFIX)));
        }
    }

    private static FileChannel makeAt(Path path) throws IOException {
        for (int attempt = 1; attempt < ATTEMPTS; attempt++) {
            try {
                return PrivateFiles.createNameless(path);
            } catch (FileAlreadyExistsException e) {
                // Of no use to anyone by its name: whoever is just making it has it open.
                Files.deleteIfExists(path);
            }
        }
        return PrivateFiles.createNameless(path);
    }
}
