package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.DirectoryNotEmptyException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.util.ArrayDeque;
import java.util.Deque;

/**
 * Removes files and folders. A link is removed itself; its target stays.
 *
 * <p>Of a tree, each folder is opened relative to the one above and without following links, where the file system can.
 * So nobody can redirect the removal by putting a link in a folder's place. What others remove at the same time is no
 * failure. The first failure or an interruption ends the removal, and the rest stays.
 *
 * <p>Memory does not grow with the number of children, because each is removed as it is read. Nor do stack and open
 * folders grow with depth: below {@link #MAX_OPEN} levels, a folder is first moved to the top under a hidden name.
 */
final class Removal {
    /** Each open folder takes two of the system's descriptors, and some processes have no more than 256. */
    static final int MAX_OPEN = 48;

    /** Some file systems skip entries while others are removed, so a folder is read again. */
    private static final int MAX_READINGS = 100;

    private final Deque<Level> levels = new ArrayDeque<>();
    private final boolean stoppable;

    private Removal(boolean stoppable) {
        this.stoppable = stoppable;
    }

    /** A folder on the way down, being emptied. */
    private static final class Level {
        final Path name;
        OpenFolder folder;
        int readings;
        boolean foundSome;

        Level(Path name, OpenFolder folder) {
            this.name = name;
            this.folder = folder;
        }

        Path nextChild() throws IOException {
            Path child = folder.next();
            foundSome |= child != null;
            return child;
        }

        /** Tells whether reading again may find what this reading has missed. */
        boolean isWorthReadingAgain() {
            return foundSome && readings < MAX_READINGS;
        }
    }

    static void removeFile(Entry entry) throws IOException, ProviderException {
        entry.requireFile();
        entry.requireNotPinned();
        Files.delete(entry.path);
    }

    static void removeFolder(Entry entry) throws IOException, ProviderException {
        entry.requireFolder();
        entry.requireNotRoot();
        Files.delete(entry.path);
    }

    static void removeFolderRecursively(Entry entry) throws IOException, ProviderException {
        entry.requireFolder();
        entry.requireNotRoot();
        entry.requireNotPinned();
        removeTree(entry.path);
    }

    /** Removes whatever is at the path: a file, a link, or a folder with everything in it. */
    static void removeTree(Path path) throws IOException {
        new Removal(/* stoppable= */ true).run(path);
    }

    /** As removeTree, but finishes even on an interrupted thread: for cleaning up after an operation. */
    static void discard(Path path) throws IOException {
        new Removal(/* stoppable= */ false).run(path);
    }

    /** Discards what a failed operation has left, if anything. A failure to do so is added to the one reported. */
    static void discard(Path incomplete, Exception reported) {
        try {
            if (EntryKind.isTaken(incomplete)) {
                discard(incomplete);
            }
        } catch (IOException | RuntimeException e) {
            reported.addSuppressed(e);
        }
    }

    private void run(Path top) throws IOException {
        if (EntryKind.of(top, LinkOption.NOFOLLOW_LINKS) != EntryKind.FOLDER) {
            Files.delete(top);
            return;
        }
        levels.addLast(new Level(top, OpenFolder.open(top)));
        try {
            while (!levels.isEmpty()) {
                step();
            }
        } finally {
            closeAll();
        }
    }

    private void closeAll() throws IOException {
        while (!levels.isEmpty()) {
            levels.removeLast().folder.close();
        }
    }

    private void step() throws IOException {
        if (stoppable) {
            Interruption.check();
        }
        Level level = levels.getLast();
        Path child = level.nextChild();
        if (child != null) {
            remove(level.folder, child);
        } else if (!isRemoved(level)) {
            readAgain(level);
        }
    }

    private void remove(OpenFolder folder, Path child) throws IOException {
        try {
            if (!folder.attributesOf(child).isDirectory()) {
                folder.deleteFile(child);
            } else if (levels.size() < MAX_OPEN || !folder.isSecure()) {
                levels.addLast(new Level(child, folder.enter(child)));
            } else {
                removeOrMoveUp(folder, child);
            }
        } catch (NoSuchFileException e) {
            // Someone else has removed it.
        }
    }

    private void removeOrMoveUp(OpenFolder folder, Path child) throws IOException {
        try {
            folder.deleteFolder(child);
        } catch (DirectoryNotEmptyException e) {
            Level top = levels.getFirst();
            folder.move(child, top.folder, Names.hiddenBeside(child));
            top.readings = 0;
        }
    }

    /** Removes a folder in which nothing more was found; returns false if it turns out not to be empty. */
    private boolean isRemoved(Level level) throws IOException {
        levels.removeLast();
        // Closed first: some systems take longer to free a folder that is open when it is removed.
        level.folder.close();
        try {
            removeEmpty(level.name);
            return true;
        } catch (DirectoryNotEmptyException e) {
            if (level.isWorthReadingAgain()) {
                return false;
            }
            throw e;
        }
    }

    private void removeEmpty(Path name) throws IOException {
        if (levels.isEmpty()) {
            Files.delete(name);
            return;
        }
        try {
            levels.getLast().folder.deleteFolder(name);
        } catch (NoSuchFileException e) {
            // Someone else has removed it.
        }
    }

    private void readAgain(Level level) throws IOException {
        level.folder = levels.isEmpty()
                ? OpenFolder.open(level.name)
                : levels.getLast().folder.enter(level.name);
        level.foundSome = false;
        level.readings++;
        levels.addLast(level);
    }
}
