package com.corvallen.storage.provider;

import java.nio.ByteBuffer;

/**
 * The bytes of one open file. A back end returns one from {@link StorageProvider#getChannel} and {@link
 * StorageProvider#getReadOnlyChannel}; the host uses it as a byte stream.
 *
 * <p>Threading: the host may call from any thread, and from different threads one after the other. Calls overlap only
 * if a host shares a stream between threads without a lock, and their order is then undefined: another call may even
 * come between the two calls of a seek ({@link #size} or {@link #position()}, then {@link #position(long)}). Every call
 * may block.
 *
 * <p>Lifetime: closing the stream closes the channel. A stream that is destroyed without being closed leaves its
 * channel open, so {@link StorageProvider#dispose} must release what such channels hold.
 *
 * <p>Once closed, every method but {@link #close} throws {@link ErrorCode#UNAVAILABLE}.
 */
public interface ProviderChannel extends AutoCloseable {
    /**
     * Reads bytes at the current position into the buffer and advances the position.
     *
     * <p>The buffer is direct and refers to memory of the host that is valid only until this call returns. The back end
     * must not keep it, and no other thread may access it afterwards. At most {@code target.remaining()} bytes are
     * read; fewer are allowed.
     *
     * @param target where the bytes go
     * @return the number of bytes read, 0 only if the buffer has no room, -1 at the end of the file
     * @throws ProviderException with ACCESS_DENIED if the channel cannot read, UNAVAILABLE if it is closed or the
     *     storage is gone. The content of the buffer is then undefined and the position unchanged
     */
    int read(ByteBuffer target) throws ProviderException;

    /**
     * Writes bytes of the buffer at the current position and advances the position. Bytes between the old end of the
     * file and the position become zero.
     *
     * <p>The buffer is direct and refers to memory of the host that is valid only until this call returns. The back end
     * must not keep it. <b>It must not write to it either</b>: the memory may be constant, although the buffer does not
     * report itself as read-only.
     *
     * @param source the bytes
     * @return the number of bytes written; fewer than {@code source.remaining()} are allowed
     * @throws ProviderException with ACCESS_DENIED if the channel is read-only, STORAGE_FULL if there is no room or no
     *     file can be that long, UNAVAILABLE if it is closed or the storage is gone. Some bytes may have been written
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
     * Sets the position. It may be any distance past the end: reading there returns -1, and writing there extends the
     * file, or throws STORAGE_FULL if no file can be that long.
     *
     * @param position bytes from the beginning of the file
     * @throws ProviderException with INVALID_LOCATION if the position is negative, which the host does not check
     *     itself, UNAVAILABLE if the channel is closed. The position is then unchanged
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
     *     STORAGE_FULL; the channel is closed nevertheless
     */
    @Override
    void close() throws ProviderException;
}
