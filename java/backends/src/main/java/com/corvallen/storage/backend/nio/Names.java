package com.corvallen.storage.backend.nio;

import java.nio.charset.StandardCharsets;
import java.nio.file.FileSystems;
import java.nio.file.InvalidPathException;
import java.nio.file.Path;
import java.util.List;
import java.util.UUID;

/** Builds paths from names: of children, so that a name stays one name, and of hidden files. */
final class Names {
    private static final String HIDDEN = ".storage-";

    /** The longest name, in bytes, on the disks of this platform. */
    private static final int MAX_LENGTH = 255;

    private Names() {}

    /**
     * Returns the path of a child. Zip archives treat a backslash as a separator, and other systems have separators and
     * drives of their own, so a name that the file system would change is refused.
     *
     * @throws InvalidPathException if the file system would not keep the name as one name
     */
    static Path child(Path folder, String name) {
        if (RawNames.isRaw(folder.getFileSystem(), name)) {
            return folder.resolve(RawNames.nameOf(name));
        }
        Path child = folder.getFileSystem().getPath(name);
        if (child.isAbsolute() || child.getNameCount() != 1 || !child.toString().equals(name)) {
            throw new InvalidPathException(name, "not a single name in this file system");
        }
        return folder.resolve(child);
    }

    /**
     * Returns the path of several names below a folder, as {@link #child} would one after the other.
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
     * Returns a path that only leads to a folder: if a pipe has taken the name, opening that path fails instead of
     * blocking. Returned unchanged for other file systems than the default one, whose paths may not know ".".
     */
    static Path asFolder(Path folder) {
        return folder.getFileSystem().equals(FileSystems.getDefault()) ? folder.resolve(".") : folder;
    }

    /** Returns a path in the same folder with a hidden name that is not taken. */
    static Path hiddenBeside(Path path) {
        return path.resolveSibling(HIDDEN + UUID.randomUUID());
    }

    /** Returns a fixed path in the same folder: a prefix and the name, or a digest of the name if that is too long. */
    static Path hiddenFor(Path path, String prefix) {
        String name = path.getFileName().toString();
        byte[] bytes = name.getBytes(StandardCharsets.UTF_8);
        boolean fits = prefix.length() + bytes.length <= MAX_LENGTH;
        return path.resolveSibling(prefix + (fits ? name : UUID.nameUUIDFromBytes(bytes)));
    }

    /** Returns the last name of a path, in the form that {@link #child} takes. */
    static String of(Path path) {
        return RawNames.textOf(path);
    }
}
