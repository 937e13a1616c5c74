package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.attribute.UserDefinedFileAttributeView;
import java.util.Base64;
import java.util.List;
import java.util.Map;

/**
 * The user attributes of a file or folder, as text for the host. A value is bytes. Valid UTF-8 is shown as it is.
 * Anything else is shown as {@code base64:} and its Base64 form, and so is text that contains NUL, where the host would
 * end it, or that begins with {@code base64:}. So no two values look the same.
 */
final class UserAttributeTexts {
    static final String PREFIX = "user:";
    private static final String ENCODED = "base64:";

    private final Found found;

    /** Null if the file system has no user attributes. */
    private final UserDefinedFileAttributeView view;

    UserAttributeTexts(Found found) {
        this(found, Files.getFileAttributeView(found.openedPath(), UserDefinedFileAttributeView.class));
    }

    UserAttributeTexts(Found found, UserDefinedFileAttributeView view) {
        this.found = found;
        this.view = view;
    }

    /**
     * Adds what can be read to the values. The platform opens a file to read them, so there are none for what is never
     * opened, what this process may not read, or a file that one of its channels holds exclusively.
     */
    void readInto(Map<String, String> values) throws IOException, ProviderException {
        if (view != null && found.isOpenable()) {
            FileUses.briefly(found, () -> readAllInto(values));
        }
    }

    private void readAllInto(Map<String, String> values) throws IOException, ProviderException {
        List<String> names = readable(view::list);
        if (names == null) {
            return;
        }
        for (String name : names) {
            byte[] value = readable(() -> UserAttributeValues.read(view, name));
            if (value != null) {
                values.put(PREFIX + name, textOf(value));
            }
        }
    }

    /**
     * Returns null for what cannot be read because it is gone, forbidden, or not named in text; throws if the storage
     * fails.
     */
    private static <T> T readable(Failures.Query<T> query) throws IOException, ProviderException {
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
            // Not text, so it is shown as Base64.
        }
        return ENCODED + Base64.getEncoder().encodeToString(value);
    }
}
