package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.DirectoryIteratorException;
import java.nio.file.DirectoryNotEmptyException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayDeque;
import java.util.Deque;

/**
 * Removes the source of a copy, but only what was copied: anything written or replaced since stays, with the folders
 * that it is in. Links cannot redirect it, because it removes only the very files that were copied. Used once, by one
 * thread.
 */
final class SourceRemoval {
    private static final int MAX_READINGS = 100;

    private final CopiedEntries copied;

    /** The first entry that stays; null if none does. */
    private Path kept;

    private SourceRemoval(CopiedEntries copied) {
        this.copied = copied;
    }

    /** A folder being emptied, and the folders in it that are still to be emptied. */
    private static final class Folder {
        final Path path;
        final Folder parent;
        final long mark;
        final Deque<Folder> pending = new ArrayDeque<>();
        boolean keepsSome;
        int readings;

        Folder(Path path, Folder parent, long mark) {
            this.path = path;
            this.parent = parent;
            this.mark = mark;
        }
    }

    /**
     * Removes what was copied.
     *
     * @throws InUseException if something stays
     */
    static void remove(Path source, CopiedEntries copied) throws IOException {
        SourceRemoval removal = new SourceRemoval(copied);
        removal.run(source);
        if (removal.kept != null) {
            throw new InUseException(
                    source.toString(),
                    "was moved, but not what was written to it during the move, such as " + removal.kept);
        }
    }

    private void run(Path source) throws IOException {
        Folder above = new Folder(source.getParent(), /* parent= */ null, /* mark= */ 0);
        visit(source, above);
        Folder folder = above.pending.poll();
        while (folder != null && folder != above) {
            if (folder.readings == 0) {
                empty(folder);
            }
            Folder next = folder.pending.pollLast();
            if (next != null) {
                folder = next;
            } else if (isDone(folder)) {
                folder = folder.parent;
            }
        }
    }

    /** Removes the files in a folder, and queues its folders. */
    private void empty(Folder folder) throws IOException {
        folder.readings++;
        try (DirectoryStream<Path> children = Files.newDirectoryStream(folder.path)) {
            for (Path child : children) {
                Interruption.check();
                visit(child, folder);
            }
        } catch (DirectoryIteratorException e) {
            throw e.getCause();
        } catch (NoSuchFileException e) {
            // Someone else has removed it.
        }
    }

    private void visit(Path path, Folder parent) throws IOException {
        BasicFileAttributes attributes = EntryKind.ownAttributesOf(path);
        if (attributes == null) {
            return;
        }
        long mark = copied.markOf(parent.mark, path.getFileName(), attributes);
        if (!copied.contains(mark)) {
            keep(path, parent);
        } else if (attributes.isDirectory()) {
            parent.pending.addLast(new Folder(path, parent, mark));
        } else if (!SpareName.removeUnchanged(path, attributes)) {
            keep(path, parent);
        }
    }

    /** Removes a folder; returns false if it has to be read again, as some systems skip entries. */
    private boolean isDone(Folder folder) throws IOException {
        BasicFileAttributes attributes = EntryKind.ownAttributesOf(folder.path);
        if (attributes == null) {
            return true;
        }
        if (folder.keepsSome || !attributes.isDirectory()) {
            keep(folder.path, folder.parent);
            return true;
        }
        try {
            Files.delete(folder.path);
            return true;
        } catch (DirectoryNotEmptyException e) {
            folder.keepsSome = folder.readings >= MAX_READINGS;
            empty(folder);
            return false;
        }
    }

    private void keep(Path path, Folder parent) {
        parent.keepsSome = true;
        if (kept == null) {
            kept = path;
        }
    }
}
