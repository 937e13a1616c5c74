package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.channels.FileChannel;
import java.nio.file.AccessDeniedException;
import java.nio.file.FileSystems;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.StandardOpenOption;
import java.util.Locale;

/** Sends what was written to the disk, so that it survives a loss of power. Does nothing where there is no disk. */
final class Durability {
    private Durability() {}

    /** Forces the names in a folder to the disk, if the disk can. */
    static void forceFolder(Path folder) throws IOException {
        if (!isOnDisk(folder) || !Privacy.isKnown(folder.getFileSystem())) {
            return;
        }
        try {
            force(folder);
        } catch (AccessDeniedException e) {
            // A folder that is writable but not readable cannot be opened for this.
        } catch (IOException e) {
            if (!isRefusalOfFolders(e)) {
                throw e;
            }
        }
    }

    private static boolean isOnDisk(Path path) {
        return path.getFileSystem().equals(FileSystems.getDefault());
    }

    private static void force(Path path) throws IOException {
        try (FileChannel channel = FileChannel.open(path, StandardOpenOption.READ, LinkOption.NOFOLLOW_LINKS)) {
            channel.force(/* metaData= */ true);
        }
    }

    /** Some network file systems cannot force folders, and say so. */
    private static boolean isRefusalOfFolders(IOException e) {
        String reason = String.valueOf(e.getMessage()).toLowerCase(Locale.ROOT);
        return reason.contains("invalid argument") || reason.contains("not supported");
    }
}
