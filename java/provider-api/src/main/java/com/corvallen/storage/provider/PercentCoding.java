package com.corvallen.storage.provider;

import java.io.ByteArrayOutputStream;
import java.nio.ByteBuffer;
import java.nio.CharBuffer;
import java.nio.charset.CharacterCodingException;
import java.nio.charset.StandardCharsets;

/** Encodes and decodes names as percent-encoded UTF-8. Rejects what cannot be represented instead of replacing it. */
final class PercentCoding {
    /** What RFC 3986 allows in a segment besides letters and digits. */
    private static final String UNENCODED = "-._~!$&'()*+,;=:@";

    private static final char[] HEX = "0123456789ABCDEF".toCharArray();

    private PercentCoding() {}

    static String decode(StorageURI location, String raw) throws ProviderException {
        if (raw.indexOf('%') < 0) {
            return raw;
        }
        StringBuilder result = new StringBuilder(raw.length());
        for (int at = 0; at < raw.length(); ) {
            if (raw.charAt(at) != '%') {
                result.append(raw.charAt(at++));
                continue;
            }
            int end = endOfEscapes(raw, at);
            result.append(decodeRun(location, raw, at, end));
            at = end;
        }
        return result.toString();
    }

    /** Returns where the run of %xx that starts here ends; one character of a name may take up to four of them. */
    private static int endOfEscapes(String raw, int start) {
        int end = start;
        while (end < raw.length() && raw.charAt(end) == '%') {
            end += 3;
        }
        return end;
    }

    private static CharBuffer decodeRun(StorageURI location, String raw, int start, int end) throws ProviderException {
        if (end > raw.length()) {
            throw SegmentNames.invalid(location, "a percent sign needs two hexadecimal digits");
        }
        ByteBuffer bytes = ByteBuffer.allocate((end - start) / 3);
        for (int at = start; at < end; at += 3) {
            int high = hexDigit(location, raw.charAt(at + 1));
            bytes.put((byte) (high * 16 + hexDigit(location, raw.charAt(at + 2))));
        }
        bytes.flip();
        try {
            return StandardCharsets.UTF_8.newDecoder().decode(bytes);
        } catch (CharacterCodingException e) {
            throw SegmentNames.invalid(location, "percent-encoded bytes must be UTF-8");
        }
    }

    /** Character.digit would accept digits of other scripts too. */
    private static int hexDigit(StorageURI location, char c) throws ProviderException {
        int digit = c < 0x80 ? Character.digit(c, 16) : -1;
        if (digit < 0) {
            throw SegmentNames.invalid(location, "a percent sign needs two hexadecimal digits");
        }
        return digit;
    }

    static String encode(StorageURI location, String name) throws ProviderException {
        ByteArrayOutputStream result = new ByteArrayOutputStream(name.length() + 16);
        ByteBuffer bytes = utf8(location, name);
        while (bytes.hasRemaining()) {
            int b = bytes.get() & 0xff;
            if (isUnencoded(b)) {
                result.write(b);
            } else {
                result.write('%');
                result.write(HEX[b >> 4]);
                result.write(HEX[b & 15]);
            }
        }
        return result.toString(StandardCharsets.US_ASCII);
    }

    private static ByteBuffer utf8(StorageURI location, String name) throws ProviderException {
        try {
            return StandardCharsets.UTF_8.newEncoder().encode(CharBuffer.wrap(name));
        } catch (CharacterCodingException e) {
            throw SegmentNames.invalid(location, "a name must be valid UTF-16");
        }
    }

    private static boolean isUnencoded(int b) {
        return b >= 'a' && b <= 'z' || b >= 'A' && b <= 'Z' || b >= '0' && b <= '9' || UNENCODED.indexOf(b) >= 0;
    }
}
