package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.Path;

/** Creates files and folders exclusively: whatever has the name stays as it is, even a link that leads nowhere. */
final class Creation {
    private Creation() {}

    static void createFile(Entry entry) throws IOException, ProviderException {
        create(entry, () -> FileUses.creating(entry.path, () -> Files.createFile(entry.path)));
    }

    static void createFolder(Entry entry) throws IOException, ProviderException {
        create(entry, () -> Files.createDirectory(entry.path));
    }

    private static void create(Entry entry, Failures.Action action) throws IOException, ProviderException {
        if (entry.isRoot()) {
            throw new FileAlreadyExistsException(entry.path.toString());
        }
        if (FileSystemTraits.createsExclusively(entry.fileSystem())) {
            createAtOnce(entry, action);
            return;
        }
        entry.requireParentFolder();
        FileSystemLocks.locked(entry.fileSystem(), () -> {
            if (EntryKind.isTaken(entry.path)) {
                throw new FileAlreadyExistsException(entry.path.toString());
            }
            action.run();
        });
    }

    /** The system checks the parent itself; only if it fails is the parent checked here, to report the right error. */
    private static void createAtOnce(Entry entry, Failures.Action action) throws IOException, ProviderException {
        try {
            action.run();
        } catch (FileSystemException e) {
            entry.requireParentFolder();
            throw e;
        }
    }

    /** Creates an empty file unless one exists. If the path is a link that leads nowhere, creates its target. */
    static void createIfMissing(Path path) throws IOException, ProviderException {
        if (FileSystemTraits.createsExclusively(path.getFileSystem())) {
            createOnDisk(path);
            return;
        }
        FileSystemLocks.locked(path.getFileSystem(), () -> {
            if (!EntryKind.isTaken(path)) {
                Files.createFile(path);
            }
        });
    }

    /** Does not open a file that exists by now: closing it would drop this process's locks on it. */
    private static void createOnDisk(Path path) throws IOException, ProviderException {
        try {
            FileUses.creating(path, () -> Files.createFile(path));
        } catch (FileAlreadyExistsException e) {
            if (Files.isSymbolicLink(path) && EntryKind.of(path) == EntryKind.MISSING) {
                createOnDisk(path.resolveSibling(Files.readSymbolicLink(path)));
            }
        }
    }
}
