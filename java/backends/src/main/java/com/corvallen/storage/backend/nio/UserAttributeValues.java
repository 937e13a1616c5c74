package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.attribute.UserDefinedFileAttributeView;
import java.util.Arrays;
import java.util.HashMap;
import java.util.List;
import java.util.Map;

/**
 * The user attributes of a file or folder, as bytes to be given to another one. Leaves out what cannot be read, and
 * those of a file that a channel of this process holds exclusively: reading them would end the channel's lock.
 */
final class UserAttributeValues {
    private final Map<String, byte[]> values;

    private UserAttributeValues(Map<String, byte[]> values) {
        this.values = values;
    }

    static UserAttributeValues of(Path path) throws IOException {
        Map<String, byte[]> values = new HashMap<>();
        FileUses.briefly(path, () -> readInto(values, viewOf(path)));
        return new UserAttributeValues(values);
    }

    private static void readInto(Map<String, byte[]> values, UserDefinedFileAttributeView view) {
        for (String name : namesIn(view)) {
            try {
                values.put(name, read(view, name));
            } catch (IOException e) {
                // Gone by now, or its name is not text.
            }
        }
    }

    private static UserDefinedFileAttributeView viewOf(Path path) {
        return Files.getFileAttributeView(path, UserDefinedFileAttributeView.class, LinkOption.NOFOLLOW_LINKS);
    }

    /** A file that may not be read does not list them, and some disks have none. */
    private static List<String> namesIn(UserDefinedFileAttributeView view) {
        try {
            return view == null ? List.of() : view.list();
        } catch (IOException e) {
            return List.of();
        }
    }

    /** Reads one value. */
    static byte[] read(UserDefinedFileAttributeView view, String name) throws IOException {
        ByteBuffer value = ByteBuffer.allocate(view.size(name));
        view.read(name, value);
        return Arrays.copyOf(value.array(), value.position());
    }

    /** Tells whether a file already has all of these, or its disk has no user attributes. */
    boolean areIn(Path path) throws IOException {
        if (values.isEmpty() || !hasAny(path)) {
            return true;
        }
        UserAttributeValues there = of(path);
        return values.entrySet().stream()
                .allMatch(entry -> Arrays.equals(entry.getValue(), there.values.get(entry.getKey())));
    }

    /** In a chroot the platform may not find the disk; giving the values then shows whether it can hold them. */
    private static boolean hasAny(Path path) {
        if (viewOf(path) == null) {
            return false;
        }
        try {
            return Files.getFileStore(path).supportsFileAttributeView(UserDefinedFileAttributeView.class);
        } catch (IOException e) {
            return true;
        }
    }

    void giveTo(Path path) throws IOException {
        FileUses.briefly(path, () -> writeTo(path));
    }

    private void writeTo(Path path) throws IOException {
        for (Map.Entry<String, byte[]> entry : values.entrySet()) {
            viewOf(path).write(entry.getKey(), ByteBuffer.wrap(entry.getValue()));
        }
    }

    /** Removes the user attributes of a file that are not among these. */
    void removeOthers(Path path) throws IOException {
        FileUses.briefly(path, () -> deleteOthers(path));
    }

    private void deleteOthers(Path path) throws IOException {
        UserDefinedFileAttributeView view = viewOf(path);
        for (String name : namesIn(view)) {
            if (!values.containsKey(name)) {
                view.delete(name);
            }
        }
    }
}
