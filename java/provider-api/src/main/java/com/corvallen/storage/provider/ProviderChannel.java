package com.corvallen.storage.provider;

import java.nio.ByteBuffer;

/**
 * The bytes of one open file. A back end returns one from {@link StorageProvider#getChannel} and {@link
 * StorageProvider#getReadOnlyChannel}; the host uses it as a byte stream.
 *
 * <p>Threading: the host may call from any thread, and from different threads one after the other. Calls do not
 * overlap, with one exception: a seek is made of two or three calls ({@link #size}, {@link #position()}, {@link
 * #position(long)}), so a host that shares a stream between threads without a lock gets whatever order results. Every
 * call may block.
 *
 * <p>Lifetime: the host closes a channel when the stream is closed. A stream that is only destroyed leaves its channel
 * open, so a back end releases what such a channel holds when it is disposed of.
 *
 * <p>Once closed, every method but {@link #close} throws {@link ErrorCode#UNAVAILABLE}.
 */
public interface ProviderChannel extends AutoCloseable {
    /**
     * Reads bytes at the current position into the buffer and moves the position on by as many.
     *
     * <p>The buffer is direct and lies over memory of the host that is valid only until this call returns. It must not
     * be kept, and no other thread may still touch it afterwards. At most {@code target.remaining()} bytes are read;
     * fewer are allowed.
     *
     * @param target where the bytes go
     * @return the number of bytes read, 0 only if the buffer has no room, -1 at the end of the file
     * @throws ProviderException with ACCESS_DENIED if the channel cannot read, UNAVAILABLE if it is closed or the
     *     storage is gone; the content of the buffer is then undefined, the position unchanged
     */
    int read(ByteBuffer target) throws ProviderException;

    /**
     * Writes bytes of the buffer at the current position and moves the position on by as many. Bytes between the old
     * end of the file and the position become zero.
     *
     * <p>The buffer is direct and lies over memory of the host that is valid only until this call returns. It must not
     * be kept. <b>It must not be written to</b>, though it does not say that it is read-only: the host may have handed
     * over constant memory.
     *
     * @param source the bytes
     * @return the number of bytes written; fewer than {@code source.remaining()} are allowed
     * @throws ProviderException with ACCESS_DENIED if the channel is read-only, STORAGE_FULL if there is no room or no
     *     file can be so long, UNAVAILABLE if it is closed or the storage is gone; some bytes may have been written
     *     then
     */
    int write(ByteBuffer source) throws ProviderException;

    /**
     * Returns the current position.
     *
     * @return bytes from the beginning of the file, 0 when the channel was just opened
     * @throws ProviderException with UNAVAILABLE if the channel is closed
     */
    long position() throws ProviderException;

    /**
     * Sets the position. A position past the end is allowed, however far: reading there meets the end of the file, and
     * writing there makes the file longer, or is STORAGE_FULL where no file can be so long.
     *
     * @param position bytes from the beginning of the file
     * @throws ProviderException with INVALID_LOCATION if the position is negative (the host passes on what a seek
     *     resulted in), UNAVAILABLE if the channel is closed; the position is then unchanged
     */
    void position(long position) throws ProviderException;

    /**
     * Returns the current size of the file.
     *
     * @return bytes
     * @throws ProviderException with UNAVAILABLE if the channel is closed or the storage is gone
     */
    long size() throws ProviderException;

    /**
     * Closes the channel and releases what it holds. When it returns without an exception, everything written is
     * visible to whoever opens the file next. Closing a closed channel does nothing.
     *
     * @throws ProviderException with the code of what went wrong while the last bytes were written, for example
     *     STORAGE_FULL; the channel is closed even so
     */
    @Override
    void close() throws ProviderException;
}
