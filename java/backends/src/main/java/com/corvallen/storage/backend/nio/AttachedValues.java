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
 * What users have attached to a file or folder, to be given to another one. What cannot be read is left out, and so is
 * what is attached to a file that a channel of this process holds exclusively: to read it would end the channel's lock.
 */
final class AttachedValues {
    private final Map<String, byte[]> values;

    private AttachedValues(Map<String, byte[]> values) {
        this.values = values;
    }

    static AttachedValues of(Path path) throws IOException {
        Map<String, byte[]> values = new HashMap<>();
        OpenFiles.briefly(path, () -> readInto(values, viewOf(path)));
        return new AttachedValues(values);
    }

    private static void readInto(Map<String, byte[]> values, UserDefinedFileAttributeView view) {
        for (String name : namesIn(view)) {
            try {
                values.put(name, read(view, name));
            } catch (IOException e) {
                // Gone by now, or a name that is no text.
            }
        }
    }

    private static UserDefinedFileAttributeView viewOf(Path path) {
        return Files.getFileAttributeView(path, UserDefinedFileAttributeView.class, LinkOption.NOFOLLOW_LINKS);
    }

    /** A file that may not be read does not show them, and some disks have none. */
    private static List<String> namesIn(UserDefinedFileAttributeView view) {
        try {
            return view == null ? List.of() : view.list();
        } catch (IOException e) {
            return List.of();
        }
    }

    private static byte[] read(UserDefinedFileAttributeView view, String name) throws IOException {
        ByteBuffer value = ByteBuffer.allocate(view.size(name));
        view.read(name, value);
        return Arrays.copyOf(value.array(), value.position());
    }

    /** Tells whether a file has all of these already, or is where there are none. */
    boolean areIn(Path path) throws IOException {
        if (values.isEmpty() || !hasAny(path)) {
            return true;
        }
        AttachedValues there = of(path);
        return values.entrySet().stream()
                .allMatch(entry -> Arrays.equals(entry.getValue(), there.values.get(entry.getKey())));
    }

    /** In a chroot the platform may not find the disk; then whoever gives some finds out. */
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
        OpenFiles.briefly(path, () -> writeTo(path));
    }

    private void writeTo(Path path) throws IOException {
        for (Map.Entry<String, byte[]> entry : values.entrySet()) {
            viewOf(path).write(entry.getKey(), ByteBuffer.wrap(entry.getValue()));
        }
    }

    /** Removes what is attached to a file and is not among these. */
    void removeOthers(Path path) throws IOException {
        OpenFiles.briefly(path, () -> deleteOthers(path));
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
