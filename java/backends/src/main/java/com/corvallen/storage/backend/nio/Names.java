package com.corvallen.storage.backend.nio;

import java.nio.file.FileSystems;
import java.nio.file.InvalidPathException;
import java.nio.file.Path;
import java.util.List;

/** Joins a folder and the name of a child, so that the name stays one name. */
final class Names {
    private Names() {}

    /**
     * Returns the path of a child. Zip archives take a backslash for a separator and other systems have separators and
     * drives of their own, so whatever is not left as it is by the file system is refused.
     *
     * @throws InvalidPathException if the file system would make something else of the name than one name
     */
    static Path child(Path folder, String name) {
        if (RawNames.isRaw(folder.getFileSystem(), name)) {
            return folder.resolve(RawNames.nameOf(name));
        }
        Path child = folder.getFileSystem().getPath(name);
        if (child.isAbsolute() || child.getNameCount() != 1 || !child.toString().equals(name)) {
            throw new InvalidPathException(name, "not one name in this file system");
        }
        return folder.resolve(child);
    }

    /**
     * Returns the path that names below a folder lead to: {@link #child} for one after the other.
     *
     * @param names those of a location, so that none is empty, {@code .} or {@code ..}, or holds a slash
     */
    static Path below(Path folder, List<String> names) {
        String joined = String.join("/", names);
        if (RawNames.isPlain(folder.getFileSystem(), joined)) {
            return folder.resolve(joined);
        }
        Path path = folder;
        for (String name : names) {
            path = child(path, name);
        }
        return path;
    }

    /**
     * Returns a path that leads to a folder only: if a pipe has taken its name in the meantime, to open that would
     * block. File systems other than the default one, whose paths may know no such name, get it as it is.
     */
    static Path asFolder(Path folder) {
        return folder.getFileSystem().equals(FileSystems.getDefault()) ? folder.resolve(".") : folder;
    }

    /** Returns the last name of a path, such that {@link #child} finds it again. */
    static String of(Path path) {
        return RawNames.textOf(path);
    }
}
