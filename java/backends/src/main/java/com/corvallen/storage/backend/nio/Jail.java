package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.Path;
import java.util.List;

/**
 * Resolves paths below a root, links included, such that the result is below the root.
 *
 * <p>Links are read one by one, and what a link leads to is never looked at before it is known to be inside. A path
 * that leaves the root, if only on the way, ends in {@link java.nio.file.AccessDeniedException}, and one that goes
 * round in circles in {@link java.nio.file.FileSystemLoopException}. Missing entries are no failure here.
 */
final class Jail {
    private final Path root;

    /** How the root was named, if that leads over links: absolute links inside may name it the same way. */
    private final Path alias;

    /**
     * Makes a jail.
     *
     * @param root absolute, with all links resolved
     * @param alias absolute, leads to the root
     */
    Jail(Path root, Path alias) {
        this.root = root;
        this.alias = alias;
    }

    /** Returns where a path below the root leads to; no part of the result was a link when it was looked at. */
    Path follow(Path path) throws IOException {
        return new LinkWalk(this, namesBelow(root, path), /* followLast= */ true).run();
    }

    /** The same for all but the last name, which stays as it is, be it a link or not. */
    Path followParent(Path path) throws IOException {
        return new LinkWalk(this, namesBelow(root, path), /* followLast= */ false).run();
    }

    Path root() {
        return root;
    }

    /** Returns the names that lead from the root to where an absolute link leads, or null if it leads out. */
    Iterable<Path> namesInside(Path absolute) {
        if (absolute.startsWith(root)) {
            return namesBelow(root, absolute);
        }
        return absolute.startsWith(alias) ? namesBelow(alias, absolute) : null;
    }

    /** Path.relativize would take ".." away, and with it the step that leads out. */
    private static Iterable<Path> namesBelow(Path base, Path path) {
        int from = base.getNameCount();
        int to = path.getNameCount();
        return from == to ? List.of() : path.subpath(from, to);
    }
}
