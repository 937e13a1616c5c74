package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.Channel;
import java.nio.channels.FileChannel;
import java.nio.channels.FileLock;
import java.nio.channels.OverlappingFileLockException;
import java.nio.file.FileSystem;

/**
 * Locks between processes: an exclusive channel locks the whole file, and no channel for writing is opened while
 * another process holds such a lock. These are the system's advisory locks; they bind only processes that ask for them.
 */
final class ProcessLock {
    private ProcessLock() {}

    /**
     * Locks the file of a channel until the channel is closed, or only checks that nobody else has locked it.
     *
     * @param exclusive true to lock, false to check
     * @return false if someone else holds a lock
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
            // The disk has no locks, so only uses within this process count.
            return true;
        }
    }

    private static boolean isFree(FileChannel channel) {
        try (FileLock lock = channel.tryLock(0, Long.MAX_VALUE, /* shared= */ true)) {
            return lock != null;
        } catch (OverlappingFileLockException e) {
            // Other code of this process has locked a part of it; that does not concern other processes.
            return true;
        } catch (IOException e) {
            return true;
        }
    }
}
