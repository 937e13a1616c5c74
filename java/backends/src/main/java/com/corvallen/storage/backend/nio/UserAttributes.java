package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.UserDefinedFileAttributeView;
import java.util.Arrays;
import java.util.Base64;
import java.util.List;
import java.util.Map;

/**
 * The attributes that someone has attached to a file or folder. A value is bytes; the host knows text only. UTF-8 is
 * shown as it is, and everything else as {@code base64:} and the bytes in Base64: what is not UTF-8, what holds a NUL,
 * where the host would end it, and what begins with {@code base64:} itself. So no two values look the same.
 */
final class UserAttributes {
    static final String PREFIX = "user:";
    private static final String ENCODED = "base64:";

    private final Path path;

    /** Null if the file system has no such attributes at all. */
    private final UserDefinedFileAttributeView view;

    UserAttributes(Path path) {
        this.path = path;
        this.view = Files.getFileAttributeView(path, UserDefinedFileAttributeView.class);
    }

    void readInto(Map<String, String> values) throws IOException {
        for (String name : names()) {
            byte[] value = read(name);
            if (value != null) {
                values.put(PREFIX + name, textOf(value));
            }
        }
    }

    private List<String> names() throws IOException {
        if (view == null) {
            return List.of();
        }
        try {
            return view.list();
        } catch (IOException e) {
            // One file system may span disks of which some can and others cannot.
            if (!Files.getFileStore(path).supportsFileAttributeView(UserDefinedFileAttributeView.class)) {
                return List.of();
            }
            throw e;
        }
    }

    /** Returns null for what is gone meanwhile, and for a name that is not text, which Java cannot ask for. */
    private byte[] read(String name) throws IOException {
        try {
            ByteBuffer value = ByteBuffer.allocate(view.size(name));
            view.read(name, value);
            return Arrays.copyOf(value.array(), value.position());
        } catch (IOException e) {
            if (!view.list().contains(name) || name.indexOf('\ufffd') >= 0) {
                return null;
            }
            throw e;
        }
    }

    static String textOf(byte[] value) {
        try {
            String text = StandardCharsets.UTF_8.newDecoder().decode(ByteBuffer.wrap(value)).toString();
            if (text.indexOf('\0') < 0 && !text.startsWith(ENCODED)) {
                return text;
            }
        } catch (CharacterCodingException e) {
            // Not text, so it is shown in its other form.
        }
        return ENCODED + Base64.getEncoder().encodeToString(value);
    }
}
