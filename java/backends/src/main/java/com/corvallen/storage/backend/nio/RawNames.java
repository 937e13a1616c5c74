package com.corvallen.storage.backend.nio;

import java.io.ByteArrayOutputStream;
import java.net.URI;
import java.nio.ByteBuffer;
import java.nio.CharBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.CoderResult;
import java.nio.charset.StandardCharsets;
import java.nio.file.FileSystem;
import java.nio.file.FileSystems;
import java.nio.file.InvalidPathException;
import java.nio.file.Path;
import java.util.Arrays;

/**
 * Converts names of a POSIX system to text and back without loss. Such a name is bytes, usually but not necessarily
 * UTF-8. Java's own text of a name that is not UTF-8 cannot be turned back, and under the locale "C" neither can any
 * name outside ASCII.
 *
 * <p>The text of a name is its bytes read as UTF-8. Each byte that is not valid UTF-8 becomes the character U+EF00 plus
 * the byte (U+EF80 to U+EFFF, in the private use area of Unicode). If a name really contains such a character, its
 * bytes are written the same way, so no two names have the same text. Text that stands for no name is refused.
 */
final class RawNames {
    private static final char FIRST = '\uef80';
    private static final char LAST = '\uefff';
    private static final char REPLACEMENT = '\ufffd';

    private RawNames() {}

    /** Tells whether the names of a file system are bytes. */
    private static boolean areBytes(FileSystem system) {
        return system.equals(FileSystems.getDefault()) && system.supportedFileAttributeViews().contains("posix");
    }

    /** Returns the text of a path's last name. */
    static String textOf(Path path) {
        String text = path.getFileName().toString();
        boolean isItself = !areBytes(path.getFileSystem()) || !holdsSuspect(text);
        return isItself ? text : decode(bytesOf(path.getFileName()));
    }

    /** Tells whether a name must not be given to {@link FileSystem#getPath}. */
    static boolean isRaw(FileSystem system, String text) {
        return areBytes(system) && (holdsReserved(text) || !isUnderstood(system, text));
    }

    /**
     * Tells whether names joined by slashes can be resolved at once, with the same result as one by one. Only where a
     * slash is the one separator.
     */
    static boolean isPlain(FileSystem system, String names) {
        try {
            return areBytes(system)
                    && !holdsReserved(names)
                    && system.getPath(names).toString().equals(names);
        } catch (InvalidPathException e) {
            return false;
        }
    }

    /** Returns the name that a text stands for, as a relative path. */
    static Path nameOf(String text) {
        byte[] bytes = encode(text);
        if (text.indexOf('/') >= 0 || text.indexOf('\0') >= 0 || !decode(bytes).equals(text)) {
            throw new InvalidPathException(text, "this text stands for no name");
        }
        StringBuilder uri = new StringBuilder("file:///");
        for (byte b : bytes) {
            uri.append(String.format("%%%02X", b));
        }
        return Path.of(URI.create(uri.toString())).getFileName();
    }

    private static boolean holdsReserved(String text) {
        for (int at = 0; at < text.length(); at++) {
            if (isReserved(text.charAt(at))) {
                return true;
            }
        }
        return false;
    }

    private static boolean isReserved(int c) {
        return c >= FIRST && c <= LAST;
    }

    /** Tells whether Java's text of a name may have lost some of its bytes. */
    private static boolean holdsSuspect(String text) {
        return text.indexOf(REPLACEMENT) >= 0 || holdsReserved(text);
    }

    private static boolean isUnderstood(FileSystem system, String text) {
        try {
            system.getPath(text);
            return true;
        } catch (InvalidPathException e) {
            return false;
        }
    }

    /** Only the URI form of a path shows its bytes. It ends in a slash if the path is an existing folder. */
    private static byte[] bytesOf(Path name) {
        String raw = Path.of("/").resolve(name).toUri().getRawPath();
        ByteArrayOutputStream bytes = new ByteArrayOutputStream(raw.length());
        for (int at = 1; at < raw.length() && raw.charAt(at) != '/'; at++) {
            if (raw.charAt(at) == '%') {
                bytes.write(Integer.parseInt(raw.substring(at + 1, at + 3), 16));
                at += 2;
            } else {
                bytes.write(raw.charAt(at));
            }
        }
        return bytes.toByteArray();
    }

    static String decode(byte[] name) {
        StringBuilder text = new StringBuilder(name.length);
        ByteBuffer in = ByteBuffer.wrap(name);
        while (in.hasRemaining()) {
            CharBuffer valid = CharBuffer.allocate(in.remaining());
            CoderResult result = StandardCharsets.UTF_8.newDecoder().decode(in, valid, /* endOfInput= */ true);
            appendValid(text, valid.flip());
            if (result.isError()) {
                text.append(characterOf(in.get()));
            }
        }
        return text.toString();
    }

    private static void appendValid(StringBuilder text, CharBuffer valid) {
        while (valid.hasRemaining()) {
            char c = valid.get();
            if (!isReserved(c)) {
                text.append(c);
                continue;
            }
            for (byte b : String.valueOf(c).getBytes(StandardCharsets.UTF_8)) {
                text.append(characterOf(b));
            }
        }
    }

    private static char characterOf(byte b) {
        return (char) (0xef00 + (b & 0xff));
    }

    static byte[] encode(String text) {
        ByteArrayOutputStream bytes = new ByteArrayOutputStream(text.length());
        int at = 0;
        while (at < text.length()) {
            int end = at;
            while (end < text.length() && !isReserved(text.charAt(end))) {
                end++;
            }
            bytes.writeBytes(utf8(text, at, end));
            if (end < text.length()) {
                bytes.write(text.charAt(end));
            }
            at = end + 1;
        }
        return bytes.toByteArray();
    }

    private static byte[] utf8(String text, int from, int to) {
        try {
            ByteBuffer bytes = StandardCharsets.UTF_8.newEncoder().encode(CharBuffer.wrap(text, from, to));
            return Arrays.copyOf(bytes.array(), bytes.limit());
        } catch (CharacterCodingException e) {
            throw new InvalidPathException(text, "not valid UTF-16");
        }
    }
}
