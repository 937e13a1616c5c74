package com.corvallen.storage.contract;

import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import java.io.ByteArrayOutputStream;
import java.nio.ByteBuffer;
import java.nio.charset.StandardCharsets;

/** Reads and writes text through channels, with direct buffers as the host does. */
public final class ChannelText {
    private ChannelText() {}

    /** Writes a text at the current position. */
    public static void write(ProviderChannel channel, String text) throws ProviderException {
        ByteBuffer bytes = direct(text);
        while (bytes.hasRemaining()) {
            channel.write(bytes);
        }
    }

    /** Reads from the current position to the end. */
    public static String read(ProviderChannel channel) throws ProviderException {
        ByteArrayOutputStream result = new ByteArrayOutputStream();
        ByteBuffer piece = ByteBuffer.allocateDirect(16);
        while (channel.read(piece) >= 0) {
            piece.flip();
            while (piece.hasRemaining()) {
                result.write(piece.get());
            }
            piece.clear();
        }
        return result.toString(StandardCharsets.UTF_8);
    }

    /** Returns a direct buffer that holds a text. */
    public static ByteBuffer direct(String text) {
        byte[] bytes = text.getBytes(StandardCharsets.UTF_8);
        return ByteBuffer.allocateDirect(bytes.length).put(bytes).flip();
    }
}
