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
 * Copies a folder with everything in it, or one file or link, to a free name, with times, permissions, owners and user
 * attributes. Links are copied as links; anything that is not a file, folder or link ends the copy. Until a folder is
 * complete, only its owner can open it. Each folder is read without following links, and only one at a time, so depth
 * costs neither stack nor open folders. An interrupted thread ends the copy.
 */
final class TreeCopy {
    private final CopiedEntries copied = new CopiedEntries();
    private final Deque<Folder> folders = new ArrayDeque<>();

    private TreeCopy() {}

    /** A folder being copied, and the folders in it that are still to be copied. */
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
     * Takes a free name for the copy: by an empty folder, or by the whole copy of a file or link. If that fails, no
     * folder or link has been made; part of a file may be left.
     */
    static TreeCopy begin(Path from, Path to) throws IOException {
        TreeCopy copier = new TreeCopy();
        BasicFileAttributes attributes =
                Files.readAttributes(from, BasicFileAttributes.class, LinkOption.NOFOLLOW_LINKS);
        if (attributes.isDirectory()) {
            long mark = copier.mark(0, from.getFileName(), attributes);
            copier.create(new Folder(from, to, attributes, mark));
        } else {
            OpenFolder parent = OpenFolder.named(from.getParent());
            copier.mark(0, from.getFileName(), FileCopy.copy(parent, from.getFileName(), to));
        }
        return copier;
    }

    /** Copies what is in the folder. The first failure ends it and leaves a partial copy. */
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

    /** Copies everything but the folders in it. */
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
                mark(folder.mark, name, FileCopy.copy(open, name, to));
            }
        } catch (NoSuchFileException e) {
            requireGone(open, name, e);
            Files.deleteIfExists(to);
        }
    }

    /** Accepts that someone else has removed the entry during the copy; otherwise throws. */
    private static void requireGone(OpenFolder open, Path name, NoSuchFileException reported) throws IOException {
        try {
            open.attributesOf(name);
        } catch (NoSuchFileException e) {
            return;
        }
        throw reported;
    }

    /** Done last: new children change the time, and the permissions may forbid new children. */
    private static void finish(Folder folder) throws IOException {
        KeptAttributes kept = KeptAttributes.of(folder.from);
        kept.giveUserAttributes(folder.to);
        Durability.forceFolder(folder.to);
        Times.copy(folder.attributes, folder.to);
        kept.giveAccess(folder.to);
    }
}
