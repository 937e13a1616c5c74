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
 * Opens a file without a name, for an archive's {@link Spool}: on the archive's own disk, which will need the room in
 * the end, or in the folder for temporary files if nothing can be created beside the archive. The file has a name only
 * for a few system calls. If a process was killed in between, the next one removes its file.
 */
final class UnnamedFile {
    static final String PREFIX = ".storage-spool-";
    private static final int ATTEMPTS = 100;

    private UnnamedFile() {}

    static SteadyFile open(Path archive) throws IOException {
        try {
            return makeAt(Names.hiddenFor(archive, PREFIX));
        } catch (FileSystemException e) {
            if (Files.isWritable(archive.getParent())) {
                throw e;
            }
            return makeAt(Names.hiddenBeside(Path.of(System.getProperty("java.io.tmpdir"), PREFIX)));
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
        throw new FileSystemException(path.toString(), null, "keeps being removed");
    }

    /** Returns a new file, or null if another process has taken the name in between. */
    private static SteadyFile madeAt(Path path) throws IOException {
        try (FileChannel made = Privacy.createFile(path)) {
            return opened(path, made);
        } catch (FileAlreadyExistsException e) {
            // Left by a process that was killed. If another process is just making it, that one tries again.
            Files.deleteIfExists(path);
            return null;
        }
    }

    /** Opens a file that was just created, and removes its name. */
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

    /** Tells whether both are the same file, by writing through one and reading through the other. */
    private static boolean areSame(FileChannel made, SteadyFile opened) throws IOException {
        ByteBuffer mark = ByteBuffer.wrap(UUID.randomUUID().toString().getBytes(StandardCharsets.US_ASCII));
        ByteBuffer found = ByteBuffer.allocate(mark.remaining());
        made.write(mark.duplicate(), 0);
        opened.read(found, 0);
        made.truncate(0);
        return found.flip().equals(mark);
    }
}
