package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.Path;
import java.util.List;

/**
 * Resolves paths below a root, including links, so that the result stays below the root.
 *
 * <p>Links are read one by one, and the target of a link is examined only after it is known to be inside. A path that
 * leaves the root, even on the way, throws {@link java.nio.file.AccessDeniedException}; one that goes in circles throws
 * {@link java.nio.file.FileSystemLoopException}. Missing entries are not a failure here.
 */
final class Jail {
    private final Path root;

    /** The root as it was named, which may lead over links: absolute links inside may name it the same way. */
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

    /** Returns where a path below the root leads; no part of the result was a link when it was examined. */
    Path follow(Path path) throws IOException {
        return new LinkWalk(this, namesBelow(root, path), /* followLast= */ true).run();
    }

    /** Like {@link #follow}, but does not follow the last name, even if it is a link. */
    Path followParent(Path path) throws IOException {
        return new LinkWalk(this, namesBelow(root, path), /* followLast= */ false).run();
    }

    Path root() {
        return root;
    }

    /** Returns the names from the root to the target of an absolute link, or null if it leads out. */
    Iterable<Path> namesInside(Path absolute) {
        if (absolute.startsWith(root)) {
            return namesBelow(root, absolute);
        }
        return absolute.startsWith(alias) ? namesBelow(alias, absolute) : null;
    }

    /** Path.relativize would drop "..", and with it the step that leads out. */
    private static Iterable<Path> namesBelow(Path base, Path path) {
        int from = base.getNameCount();
        int to = path.getNameCount();
        return from == to ? List.of() : path.subpath(from, to);
    }
}
