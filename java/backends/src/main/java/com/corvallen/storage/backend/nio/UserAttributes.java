package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
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

    private final Found found;

    /** Null if the file system has no such attributes at all. */
    private final UserDefinedFileAttributeView view;

    UserAttributes(Found found) {
        this(found, Files.getFileAttributeView(found.openedPath(), UserDefinedFileAttributeView.class));
    }

    UserAttributes(Found found, UserDefinedFileAttributeView view) {
        this.found = found;
        this.view = view;
    }

    /**
     * Adds what can be read to the values. The platform opens what it reads them of, so there are none of what is never
     * opened, none that this process may not read, and none of a file while one of its channels holds it exclusively.
     */
    void readInto(Map<String, String> values) throws IOException, ProviderException {
        if (view != null && found.isOpenable()) {
            OpenFiles.briefly(found, () -> readAllInto(values));
        }
    }

    private void readAllInto(Map<String, String> values) throws IOException, ProviderException {
        List<String> names = readable(view::list);
        if (names == null) {
            return;
        }
        for (String name : names) {
            byte[] value = readable(() -> read(name));
            if (value != null) {
                values.put(PREFIX + name, textOf(value));
            }
        }
    }

    /** Among those that cannot be read are those that are gone meanwhile, and names that are not text. */
    private byte[] read(String name) throws IOException {
        ByteBuffer value = ByteBuffer.allocate(view.size(name));
        view.read(name, value);
        return Arrays.copyOf(value.array(), value.position());
    }

    /** Returns null for what cannot be read here; throws if only now it cannot, because the storage fails. */
    private static <T> T readable(IoQuery<T> query) throws IOException, ProviderException {
        try {
            return query.run();
        } catch (IOException e) {
            ErrorCode code = ErrorTable.codeOf(e);
            if (code == ErrorCode.UNAVAILABLE || code == ErrorCode.NOT_FOUND) {
                throw e;
            }
            return null;
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
