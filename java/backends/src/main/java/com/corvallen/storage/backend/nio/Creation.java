package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.FileAlreadyExistsException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.Path;

/** Creates files and folders, exclusively: what has the name already stays as it is, a link that leads nowhere too. */
final class Creation {
    private Creation() {}

    static void createFile(Entry entry) throws IOException, ProviderException {
        create(entry, () -> OpenFiles.creating(entry.path, () -> Files.createFile(entry.path)));
    }

    static void createFolder(Entry entry) throws IOException, ProviderException {
        create(entry, () -> Files.createDirectory(entry.path));
    }

    private static void create(Entry entry, IoAction action) throws IOException, ProviderException {
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

    /** The system looks for the parent itself; which of its faults it has met is found out afterwards. */
    private static void createAtOnce(Entry entry, IoAction action) throws IOException, ProviderException {
        try {
            action.run();
        } catch (FileSystemException e) {
            entry.requireParentFolder();
            throw e;
        }
    }

    /** Creates an empty file unless one is there; through a link that leads nowhere, the one that it names. */
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

    /** What is there by now is not opened: to close it again would take the locks of this process off it. */
    private static void createOnDisk(Path path) throws IOException, ProviderException {
        try {
            OpenFiles.creating(path, () -> Files.createFile(path));
        } catch (FileAlreadyExistsException e) {
            if (Files.isSymbolicLink(path) && EntryKind.of(path) == EntryKind.MISSING) {
                createOnDisk(path.resolveSibling(Files.readSymbolicLink(path)));
            }
        }
    }
}
