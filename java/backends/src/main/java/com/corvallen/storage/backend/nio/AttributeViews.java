package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.ExtendedAttributes;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFileAttributes;
import java.nio.file.attribute.PosixFilePermissions;
import java.util.Map;
import java.util.Set;
import java.util.TreeMap;

/**
 * Reads everything else that a file system knows of a file or folder, as names with the view in front:
 *
 * <ul>
 *   <li>{@code basic:creationTime} and the others of {@code BasicFileAttributes}; times as ISO-8601 text with all digits.
 *       {@code basic:isSymbolicLink} is about the location itself, all others about what it leads to;
 *   <li>{@code posix:owner}, {@code posix:group} and {@code posix:permissions} ({@code rwxr-x---}), where there are any;
 *   <li>{@code user:name} for each attribute that someone has attached, where the file system can.
 * </ul>
 *
 * <p>They come in the order of their names.
 */
final class AttributeViews {
    /** All but the key of the file, whose text means nothing outside the file system, and isSymbolicLink. */
    private static final Set<String> BASIC = Set.of(
            "creationTime", "isDirectory", "isOther", "isRegularFile", "lastAccessTime", "lastModifiedTime", "size");

    private final Path path;
    private final Map<String, String> values = new TreeMap<>();

    private AttributeViews(Path path) {
        this.path = path;
    }

    /**
     * Reads all attributes.
     *
     * @param isLink whether the location that led here is a link
     */
    static ExtendedAttributes of(Found found, boolean isLink) throws IOException {
        AttributeViews views = new AttributeViews(found.path);
        views.values.put("basic:isSymbolicLink", Boolean.toString(isLink));
        views.readBasic();
        views.readPosix();
        new UserAttributes(found.path).readInto(views.values);
        return new ExtendedAttributes(views.values.entrySet().stream()
                .map(entry -> new ExtendedAttribute(entry.getKey(), entry.getValue()))
                .toArray(ExtendedAttribute[]::new));
    }

    private void readBasic() throws IOException {
        Files.readAttributes(path, "basic:" + String.join(",", BASIC))
                .forEach((name, value) -> values.put("basic:" + name, value.toString()));
    }

    private void readPosix() throws IOException {
        if (!path.getFileSystem().supportedFileAttributeViews().contains("posix")) {
            return;
        }
        PosixFileAttributes attributes = Files.readAttributes(path, PosixFileAttributes.class);
        values.put("posix:owner", attributes.owner().getName());
        values.put("posix:group", attributes.group().getName());
        values.put("posix:permissions", PosixFilePermissions.toString(attributes.permissions()));
    }
}
