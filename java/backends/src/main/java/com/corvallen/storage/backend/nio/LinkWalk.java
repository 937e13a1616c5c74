package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.AccessDeniedException;
import java.nio.file.FileSystemException;
import java.nio.file.FileSystemLoopException;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayDeque;
import java.util.ArrayList;
import java.util.Deque;
import java.util.List;

/** One walk from the root of a jail along a list of names. Used once, by one thread. */
final class LinkWalk {
    /** As many as the Linux kernel follows. */
    private static final int MAX_LINKS = 40;

    private final Jail jail;
    private final boolean followLast;
    private final Deque<Path> pending = new ArrayDeque<>();

    /** Where the walk is: below the root, with no link in the path. */
    private Path current;

    private int links;

    LinkWalk(Jail jail, Iterable<Path> names, boolean followLast) {
        this.jail = jail;
        this.followLast = followLast;
        this.current = jail.root();
        names.forEach(pending::addLast);
    }

    Path run() throws IOException {
        while (!pending.isEmpty()) {
            step(pending.removeFirst());
        }
        return current;
    }

    private void step(Path name) throws IOException {
        switch (name.toString()) {
            case "":
            case ".":
                return;
            case "..":
                current = parentOf(current);
                return;
            default:
                Path next = current.resolve(name);
                boolean isLast = pending.isEmpty();
                if ((followLast || !isLast) && isLink(next)) {
                    enter(next);
                } else {
                    current = next;
                }
        }
    }

    private Path parentOf(Path path) throws IOException {
        if (path.equals(jail.root())) {
            throw escape(path);
        }
        return path.getParent();
    }

    private void enter(Path link) throws IOException {
        if (++links > MAX_LINKS) {
            throw new FileSystemLoopException(link.toString());
        }
        Path target = Files.readSymbolicLink(link);
        Iterable<Path> names = target;
        if (target.isAbsolute()) {
            names = jail.namesInside(target);
            current = jail.root();
        }
        if (names == null) {
            throw escape(link);
        }
        prepend(names);
    }

    private void prepend(Iterable<Path> names) {
        List<Path> list = new ArrayList<>();
        names.forEach(list::add);
        for (int i = list.size() - 1; i >= 0; i--) {
            pending.addFirst(list.get(i));
        }
    }

    private static AccessDeniedException escape(Path path) {
        return new AccessDeniedException(path.toString(), null, "a link leads out of the mount");
    }

    /** Files.isSymbolicLink returns false if it cannot find out, and the system would then follow the link. */
    private boolean isLink(Path path) throws IOException {
        try {
            return attributesOf(path).isSymbolicLink();
        } catch (NoSuchFileException e) {
            return false;
        } catch (FileSystemException e) {
            if (EntryKind.of(current, LinkOption.NOFOLLOW_LINKS) == EntryKind.FOLDER) {
                throw e;
            }
            return false;
        }
    }

    private static BasicFileAttributes attributesOf(Path path) throws IOException {
        return Files.readAttributes(path, BasicFileAttributes.class, LinkOption.NOFOLLOW_LINKS);
    }
}
