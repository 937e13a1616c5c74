package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.Map;
import java.util.TreeMap;

/**
 * Reads everything else that a file system knows of a file or folder, as names with the view in front:
 *
 * <ul>
 *   <li>{@code basic:creationTime} and the others of {@code BasicFileAttributes}; times as ISO-8601 text, all digits.
 *       {@code basic:isSymbolicLink} is about the location itself, all others about what it leads to;
 *   <li>{@code basic:fileKey}, as {@link FileKey} says;
 *   <li>{@code posix:owner}, {@code posix:group}, {@code posix:permissions} ({@code rwxr-x---}), where there are any;
 *   <li>{@code user:name} for each attribute that someone has attached, where the file system can and lets this process
 *       read it.
 * </ul>
 *
 * <p>They come in the order of their names.
 */
final class AttributeViews {
    private final OwnerNames owners;

    AttributeViews(OwnerNames owners) {
        this.owners = owners;
    }

    /**
     * Reads all attributes.
     *
     * @param isLink whether the location that led here is a link
     */
    ExtendedAttributes of(Found found, boolean isLink) throws IOException, ProviderException {
        Map<String, String> values = new TreeMap<>();
        values.put("basic:isSymbolicLink", Boolean.toString(isLink));
        putBasic(found.attributes, values);
        owners.readInto(found.path, values);
        FileKey.readInto(found, values);
        new UserAttributes(found).readInto(values);
        return new ExtendedAttributes(values.entrySet().stream()
                .map(entry -> new ExtendedAttribute(entry.getKey(), entry.getValue()))
                .toArray(ExtendedAttribute[]::new));
    }

    /** All but the key of the file. */
    private static void putBasic(BasicFileAttributes attributes, Map<String, String> values) {
        values.put("basic:creationTime", attributes.creationTime().toString());
        values.put("basic:isDirectory", Boolean.toString(attributes.isDirectory()));
        values.put("basic:isOther", Boolean.toString(attributes.isOther()));
        values.put("basic:isRegularFile", Boolean.toString(attributes.isRegularFile()));
        values.put("basic:lastAccessTime", attributes.lastAccessTime().toString());
        values.put("basic:lastModifiedTime", attributes.lastModifiedTime().toString());
        values.put("basic:size", Long.toString(attributes.size()));
    }
}
