package com.corvallen.storage.backend.nio;

import java.nio.file.FileSystem;
import java.nio.file.FileSystems;
import java.util.Set;

/** What the known kinds of file systems do correctly. For unknown ones, the worst is assumed. */
final class FileSystemTraits {
    private static final Set<String> RENAMING_SCHEMES = Set.of("file", "jimfs");
    private static final String ZIP_SCHEME = "jar";

    private FileSystemTraits() {}

    /**
     * Tells whether "create unless it exists" is one step, even against other processes. In a zip archive two threads
     * may both find a name free and both take it.
     */
    static boolean createsExclusively(FileSystem system) {
        return system.equals(FileSystems.getDefault());
    }

    /**
     * Tells whether renaming a folder takes its content along. A zip archive moves only the folder, reports success,
     * and leaves the children where nothing finds them.
     */
    static boolean renamesWholeFolders(FileSystem system) {
        return RENAMING_SCHEMES.contains(system.provider().getScheme());
    }

    /** Tells whether a file keeps its time when it is renamed. In a zip archive it gets the time of the rename. */
    static boolean renamesWithTime(FileSystem system) {
        return RENAMING_SCHEMES.contains(system.provider().getScheme());
    }

    /**
     * Tells whether a file that is open for writing can be removed and moved. In a zip archive, closing the file writes
     * its content to the old name, so a removed file comes back. Unknown file systems may do the same.
     */
    static boolean movesOpenFiles(String scheme) {
        return RENAMING_SCHEMES.contains(scheme);
    }

    /** Tells the same of a file that is open only for reading. Zip archives read from a copy. */
    static boolean movesFilesOpenForReading(String scheme) {
        return movesOpenFiles(scheme) || scheme.equals(ZIP_SCHEME);
    }

    /** Tells whether a file can be moved and copied right after it was written; see {@link ZipEntryCopy}. */
    static boolean movesWrittenFiles(FileSystem system) {
        return !isZip(system);
    }

    /**
     * Tells whether several channels can write to one file. In a zip archive each has its own copy, and the last one
     * closed undoes what the others wrote.
     */
    static boolean sharesWriting(FileSystem system) {
        return !isZip(system);
    }

    /** Tells whether other processes can use the files too, so that file locks matter. */
    static boolean isSharedByProcesses(FileSystem system) {
        return system.equals(FileSystems.getDefault());
    }

    /** Tells whether the store reports the size of its content as its total space, as a zip archive does. */
    static boolean growsOnItsDisk(FileSystem system) {
        return isZip(system);
    }

    /** Tells whether times are stored as unsigned 32-bit seconds, so that others come back wrong after closing. */
    static boolean keepsTimesIn32Bits(FileSystem system) {
        return isZip(system);
    }

    private static boolean isZip(FileSystem system) {
        return system.provider().getScheme().equals(ZIP_SCHEME);
    }
}
