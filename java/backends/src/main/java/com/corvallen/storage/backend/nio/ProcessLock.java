package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.Channel;
import java.nio.channels.FileChannel;
import java.nio.channels.FileLock;
import java.nio.channels.OverlappingFileLockException;
import java.nio.file.FileSystem;

/**
 * What processes tell each other about files: an exclusive channel holds a lock on the whole file, and no channel for
 * writing is opened while another process holds one. The locks are the system's advisory ones; they bind those who ask.
 */
final class ProcessLock {
    private ProcessLock() {}

    /**
     * Locks the file of a channel until the channel is closed, or only looks whether it is locked.
     *
     * @param exclusive whether to lock it
     * @return false if someone else's lock forbids it
     */
    static boolean obtain(Channel channel, FileSystem system, boolean exclusive) {
        if (!(channel instanceof FileChannel) || !FileSystemTraits.isSharedByProcesses(system)) {
            return true;
        }
        return exclusive ? lock((FileChannel) channel) : isFree((FileChannel) channel);
    }

    private static boolean lock(FileChannel channel) {
        try {
            return channel.tryLock() != null;
        } catch (OverlappingFileLockException e) {
            return false;
        } catch (IOException e) {
            // The disk has no locks; then those of this process are all there are.
            return true;
        }
    }

    private static boolean isFree(FileChannel channel) {
        try (FileLock lock = channel.tryLock(0, Long.MAX_VALUE, /* shared= */ true)) {
            return lock != null;
        } catch (OverlappingFileLockException e) {
            // Other code of this process has locked part of it, which is its own affair.
            return true;
        } catch (IOException e) {
            return true;
        }
    }
}
