package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.DirectoryNotEmptyException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.util.ArrayDeque;
import java.util.Deque;

/**
 * Removes a folder with everything in it, links included, and nothing that a link leads to.
 *
 * <p>Where the file system can, each folder is opened relative to the one above and without following links, so not
 * even someone who swaps a folder for a link meanwhile can lead the removal astray. What others remove at the same time
 * is fine. The first failure ends it, and what is left then stays; an interruption does the same.
 *
 * <p>The number of children takes no memory, since each is removed as it is read. Depth takes neither stack nor more
 * than {@link #MAX_OPEN} open folders: a folder further down is first moved up to the top, under a hidden name.
 */
final class TreeDeleter {
    /** Each takes two of the system's descriptors, and some processes may have no more than 256. */
    static final int MAX_OPEN = 48;

    /** Some file systems leave entries out when others are removed while they are read, so a folder is read again. */
    private static final int MAX_READINGS = 100;

    private final Deque<Level> levels = new ArrayDeque<>();
    private final boolean stoppable;

    private TreeDeleter(boolean stoppable) {
        this.stoppable = stoppable;
    }

    /** A folder on the way down that is being emptied. */
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

        /** Whether another reading may find what this one has missed. */
        boolean isWorthReadingAgain() {
            return foundSome && readings < MAX_READINGS;
        }
    }

    /** Removes whatever is at the path: a folder with everything in it, or a file or link. */
    static void delete(Path path) throws IOException {
        new TreeDeleter(/* stoppable= */ true).run(path);
    }

    /** The same for what an operation has made that fails: an interrupted thread cleans up all the same. */
    static void discard(Path path) throws IOException {
        new TreeDeleter(/* stoppable= */ false).run(path);
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
            folder.move(child, top.folder, HiddenNames.beside(child));
            top.readings = 0;
        }
    }

    /** Removes a folder in which nothing more was found; returns false if there is something in it all the same. */
    private boolean isRemoved(Level level) throws IOException {
        levels.removeLast();
        // Some systems take longer to free what is removed while it is open.
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
