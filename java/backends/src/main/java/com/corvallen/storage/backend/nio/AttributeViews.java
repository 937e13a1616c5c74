package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.FileSystems;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.Map;
import java.util.TreeMap;

/**
 * Reads all other attributes of a file or folder. Each name begins with its view:
 *
 * <ul>
 *   <li>{@code basic:creationTime} and the others of {@code BasicFileAttributes}; times as ISO-8601 text with all
 *       digits. {@code basic:isSymbolicLink} describes the location itself, all others its target;
 *   <li>{@code basic:fileKey}, where there is one: text that is equal for two locations, whatever their mounts, if and
 *       only if they lead to the same file or folder. It is valid only as long as the process runs;
 *   <li>{@code posix:owner}, {@code posix:group}, {@code posix:permissions} ({@code rwxr-x---}), where files have them;
 *   <li>{@code user:name} for each user attribute, where the file system has them and lets this process read it.
 * </ul>
 *
 * <p>They are sorted by name.
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
        putFileKey(found, values);
        new UserAttributeTexts(found).readInto(values);
        return new ExtendedAttributes(values.entrySet().stream()
                .map(entry -> new ExtendedAttribute(entry.getKey(), entry.getValue()))
                .toArray(ExtendedAttribute[]::new));
    }

    /** Puts all but the key of the file. */
    private static void putBasic(BasicFileAttributes attributes, Map<String, String> values) {
        values.put("basic:creationTime", attributes.creationTime().toString());
        values.put("basic:isDirectory", Boolean.toString(attributes.isDirectory()));
        values.put("basic:isOther", Boolean.toString(attributes.isOther()));
        values.put("basic:isRegularFile", Boolean.toString(attributes.isRegularFile()));
        values.put("basic:lastAccessTime", attributes.lastAccessTime().toString());
        values.put("basic:lastModifiedTime", attributes.lastModifiedTime().toString());
        values.put("basic:size", Long.toString(attributes.size()));
    }

    private static void putFileKey(Found found, Map<String, String> values) {
        Object key = found.attributes.fileKey();
        if (key != null) {
            values.put("basic:fileKey", namespaceOf(found.fileSystem()) + key);
        }
    }

    /** Keys are unique only within one file system; those of the default one need no prefix. */
    private static String namespaceOf(FileSystem fileSystem) {
        boolean isDefault = fileSystem == FileSystems.getDefault();
        return isDefault ? "" : Integer.toHexString(System.identityHashCode(fileSystem)) + ":";
    }
}
