package com.corvallen.storage.test.data;

import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.test.Failures;
import com.corvallen.storage.test.Script;
import java.nio.ByteBuffer;
import java.nio.charset.StandardCharsets;
import java.util.Arrays;
import java.util.HashMap;
import java.util.Map;

/**
 * A channel over bytes in memory that notes every call in the script: "read" and "write" with the buffer's position,
 * limit and capacity. Settings of the class hold for all channels until {@link #reset}. Not to be used by two
 * threads at once.
 */
public final class MemoryChannel implements ProviderChannel {
    private static final Map<String, Throwable> failures = new HashMap<>();
    private static Integer fixedCount;
    private static int largestCount;
    private static long lastAddress;

    static {
        reset();
    }

    private byte[] content;
    private long position;

    private MemoryChannel(byte[] content) {
        this.content = content;
    }

    /** Forgets the settings and what all channels have recorded. */
    public static void reset() {
        failures.clear();
        fixedCount = null;
        largestCount = Integer.MAX_VALUE;
        lastAddress = 0;
    }

    /** A channel over the text's ASCII bytes. */
    public static Object over(String text) {
        return new MemoryChannel(text.getBytes(StandardCharsets.US_ASCII));
    }

    /** Has the script open a channel over the text, however it is asked to. */
    public static void open(String text) {
        Script.answer("getChannel", over(text));
        Script.answer("getReadOnlyChannel", over(text));
    }

    /** Transfers answer with this count and leave the memory alone. */
    public static void answerTransfersWith(String count) {
        fixedCount = Integer.valueOf(count);
    }

    /** No transfer moves more bytes than this. */
    public static void moveAtMost(String count) {
        largestCount = Integer.parseInt(count);
    }

    /** The next call of the method throws. */
    public static void failNext(String method, String kind, String text) {
        failures.put(method, Failures.make(kind, text));
    }

    /** Where the memory of the last buffer lies, as a decimal number. */
    public static String lastAddress() {
        return Long.toString(lastAddress);
    }

    /** Registered by the test. */
    private static native long addressOf(ByteBuffer buffer);

    @Override
    public int read(ByteBuffer target) throws ProviderException {
        note("read", target);
        if (fixedCount != null) {
            return fixedCount;
        }
        if (position >= content.length) {
            return -1;
        }
        int count = Math.min(Math.min(target.remaining(), content.length - (int) position), largestCount);
        target.put(content, (int) position, count);
        position += count;
        return count;
    }

    @Override
    public int write(ByteBuffer source) throws ProviderException {
        note("write", source);
        if (fixedCount != null) {
            return fixedCount;
        }
        int count = Math.min(source.remaining(), largestCount);
        if (position + count > content.length) {
            content = Arrays.copyOf(content, (int) position + count);
        }
        source.get(content, (int) position, count);
        position += count;
        return count;
    }

    @Override
    public long position() throws ProviderException {
        note("position");
        return position;
    }

    @Override
    public void position(long newPosition) throws ProviderException {
        note("position", Long.toString(newPosition));
        position = newPosition;
    }

    @Override
    public long size() throws ProviderException {
        note("size");
        return content.length;
    }

    @Override
    public void close() throws ProviderException {
        note("close");
    }

    private static void note(String method, ByteBuffer buffer) {
        lastAddress = buffer == null ? 0 : addressOf(buffer);
        note(method, buffer == null ? "null" : buffer.position() + " " + buffer.limit() + " " + buffer.capacity());
    }

    private static void note(String method, String... arguments) {
        Script.note(method, arguments);
        Throwable failure = failures.remove(method);
        if (failure != null) {
            throwAsIs(failure);
        }
    }

    /** Throws what the compiler would not let this method throw. */
    @SuppressWarnings("unchecked")
    private static <E extends Throwable> void throwAsIs(Throwable failure) throws E {
        throw (E) failure;
    }
}
