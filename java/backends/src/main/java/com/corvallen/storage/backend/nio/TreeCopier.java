package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayDeque;
import java.util.Deque;

/**
 * Copies a folder with everything in it, or one file or link, to a free name: times, permissions, owners and user
 * attributes included. Links are copied as links; what is neither file, folder nor link ends it. Until a folder is
 * complete it is closed to others. Each folder is read while nobody can lead the reading astray by a link, and one at a
 * time, so that depth takes neither stack nor open folders. An interrupted thread ends it.
 */
final class TreeCopier {
    private final CopiedEntries copied = new CopiedEntries();
    private final Deque<Folder> folders = new ArrayDeque<>();

    private TreeCopier() {}

    /** A folder that is being copied, and those in it that will be. */
    private static final class Folder {
        final Path from;
        final Path to;
        final BasicFileAttributes attributes;
        final long mark;
        final Deque<Folder> pending = new ArrayDeque<>();

        Folder(Path from, Path to, BasicFileAttributes attributes, long mark) {
            this.from = from;
            this.to = to;
            this.attributes = attributes;
            this.mark = mark;
        }
    }

    /**
     * Takes a free name for the copy: with an empty folder, or with the whole copy if what is copied is none. If that
     * fails, a folder or link has not been made; of a file, part may be left.
     */
    static TreeCopier begin(Path from, Path to) throws IOException {
        TreeCopier copier = new TreeCopier();
        BasicFileAttributes attributes =
                Files.readAttributes(from, BasicFileAttributes.class, LinkOption.NOFOLLOW_LINKS);
        if (attributes.isDirectory()) {
            long mark = copier.mark(0, from.getFileName(), attributes);
            copier.create(new Folder(from, to, attributes, mark));
        } else {
            OpenFolder parent = OpenFolder.named(from.getParent());
            copier.mark(0, from.getFileName(), EntryCopy.copy(parent, from.getFileName(), to));
        }
        return copier;
    }

    /** Copies what is in the folder. The first failure ends it, and part of it is left. */
    CopiedEntries fill() throws IOException {
        if (!folders.isEmpty()) {
            copyChildren(folders.getLast());
        }
        while (!folders.isEmpty()) {
            Folder next = folders.getLast().pending.pollLast();
            if (next == null) {
                finish(folders.removeLast());
            } else {
                create(next);
                copyChildren(next);
            }
        }
        return copied;
    }

    private void create(Folder folder) throws IOException {
        Files.createDirectory(folder.to, Privacy.ofFolder(folder.to));
        folders.addLast(folder);
    }

    private long mark(long parent, Path name, BasicFileAttributes attributes) {
        long mark = copied.markOf(parent, name, attributes);
        copied.add(mark);
        return mark;
    }

    /** Copies all but the folders in it. */
    private void copyChildren(Folder folder) throws IOException {
        try (OpenFolder open = OpenFolder.open(folder.from, folder.attributes)) {
            for (Path name = open.next(); name != null; name = open.next()) {
                Interruption.check();
                copyChild(folder, open, name);
            }
        }
    }

    private void copyChild(Folder folder, OpenFolder open, Path name) throws IOException {
        Path to = Names.child(folder.to, Names.of(name));
        try {
            BasicFileAttributes attributes = open.attributesOf(name);
            if (attributes.isDirectory()) {
                long mark = mark(folder.mark, name, attributes);
                folder.pending.addLast(new Folder(open.pathOf(name), to, attributes, mark));
            } else {
                mark(folder.mark, name, EntryCopy.copy(open, name, to));
            }
        } catch (NoSuchFileException e) {
            requireGone(open, name, e);
            Files.deleteIfExists(to);
        }
    }

    /** What someone else has removed meanwhile is left out. */
    private static void requireGone(OpenFolder open, Path name, NoSuchFileException reported) throws IOException {
        try {
            open.attributesOf(name);
        } catch (NoSuchFileException e) {
            return;
        }
        throw reported;
    }

    /** Last, since new children change the time, and permissions may forbid new children. */
    private static void finish(Folder folder) throws IOException {
        KeptAttributes kept = KeptAttributes.of(folder.from);
        kept.giveAttached(folder.to);
        Durability.forceFolder(folder.to);
        Times.copy(folder.attributes, folder.to);
        kept.giveAccess(folder.to);
    }
}
