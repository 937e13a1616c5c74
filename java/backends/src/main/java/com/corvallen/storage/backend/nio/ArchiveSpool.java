package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.channels.FileChannel;
import java.nio.charset.StandardCharsets;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.UUID;

/**
 * Finds room for what is unpacked from an archive or is to go into it: on the archive's own disk, which must have it in
 * the end, or in the folder for temporary files where nothing can be made beside the archive. The file is there by name
 * just for some calls of the system; one that a process left there by being killed in between is removed.
 */
final class ArchiveSpool {
    static final String PREFIX = ".storage-spool-";
    private static final int ATTEMPTS = 100;

    private ArchiveSpool() {}

    static SteadyFile open(Path archive) throws IOException {
        try {
            return makeAt(HiddenNames.of(archive, PREFIX));
        } catch (FileSystemException e) {
            if (Files.isWritable(archive.getParent())) {
                throw e;
            }
            return makeAt(HiddenNames.beside(Path.of(System.getProperty("java.io.tmpdir"), PREFIX)));
        }
    }

    private static SteadyFile makeAt(Path path) throws IOException {
        Interruption.PutOff interruption = new Interruption.PutOff();
        try {
            return madeAfterAttempts(path);
        } finally {
            interruption.end();
        }
    }

    private static SteadyFile madeAfterAttempts(Path path) throws IOException {
        for (int attempt = 1; attempt <= ATTEMPTS; attempt++) {
            SteadyFile made = madeAt(path);
            if (made != null) {
                return made;
            }
        }
        throw new FileSystemException(path.toString(), null, "is removed again and again");
    }

    /** Returns a new file, null if it is someone else's that has the name by now. */
    private static SteadyFile madeAt(Path path) throws IOException {
        try (FileChannel made = PrivateFiles.create(path)) {
            return opened(path, made);
        } catch (FileAlreadyExistsException e) {
            // Left by a process that was killed, or just being made by another one, which has to try again then.
            Files.deleteIfExists(path);
            return null;
        }
    }

    /** Opens a file that was just made, and takes its name away. */
    private static SteadyFile opened(Path path, FileChannel made) throws IOException {
        SteadyFile file = null;
        boolean isSound = false;
        try {
            file = SteadyFile.writing(path);
            isSound = areSame(made, file);
        } finally {
            if (file != null && !isSound) {
                file.close();
            }
            Files.deleteIfExists(path);
        }
        return isSound ? file : null;
    }

    /** Tells whether both lead to one file, by what is written through one and read through the other. */
    private static boolean areSame(FileChannel made, SteadyFile opened) throws IOException {
        ByteBuffer mark = ByteBuffer.wrap(UUID.randomUUID().toString().getBytes(StandardCharsets.US_ASCII));
        ByteBuffer found = ByteBuffer.allocate(mark.remaining());
        made.write(mark.duplicate(), 0);
        opened.read(found, 0);
        made.truncate(0);
        return found.flip().equals(mark);
    }
}
