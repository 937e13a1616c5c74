package com.corvallen.storage.backend.nio;

import java.nio.file.FileSystem;
import java.nio.file.FileSystems;
import java.util.Set;

/** What kinds of file systems are known to do right. What is not known is done by other means. */
final class FileSystemTraits {
    private static final Set<String> RENAMING_SCHEMES = Set.of("file", "jimfs");
    private static final String ZIP_SCHEME = "jar";

    private FileSystemTraits() {}

    /**
     * Tells whether "create unless it exists" is one step, against other processes too. In a zip archive two threads
     * may both find a name free and both take it.
     */
    static boolean createsExclusively(FileSystem system) {
        return system.equals(FileSystems.getDefault());
    }

    /**
     * Tells whether renaming a folder takes its content along. A zip archive moves the folder alone, calls it a success
     * and leaves the children behind where nobody finds them.
     */
    static boolean renamesWholeFolders(FileSystem system) {
        return RENAMING_SCHEMES.contains(system.provider().getScheme());
    }

    /** Tells whether a file keeps its time when it is renamed. In a zip archive it gets the time of the renaming. */
    static boolean renamesWithTime(FileSystem system) {
        return RENAMING_SCHEMES.contains(system.provider().getScheme());
    }

    /**
     * Tells whether a file that is open for writing can be removed and moved. In a zip archive its content goes to the
     * old name when it is closed, so that what was removed comes back; for what is not known the same is feared.
     */
    static boolean movesOpenFiles(String scheme) {
        return RENAMING_SCHEMES.contains(scheme);
    }

    /** The same for a file that is open for reading only. Zip archives read from a copy. */
    static boolean movesFilesOpenForReading(String scheme) {
        return movesOpenFiles(scheme) || scheme.equals(ZIP_SCHEME);
    }

    /** Tells whether what was written through a channel can be moved and copied at once; see {@link ArchiveCopy}. */
    static boolean movesWrittenFiles(FileSystem system) {
        return !isZip(system);
    }

    /**
     * Tells whether several channels can write to one file. In a zip archive each has a copy of its own, and the last
     * to be closed undoes what the others wrote.
     */
    static boolean sharesWriting(FileSystem system) {
        return !isZip(system);
    }

    /** Tells whether other processes may use the files too, so that locks on them mean something. */
    static boolean isSharedByProcesses(FileSystem system) {
        return system.equals(FileSystems.getDefault());
    }

    /** Tells whether the store counts its content as its total space, as a zip archive does. */
    static boolean growsOnItsDisk(FileSystem system) {
        return isZip(system);
    }

    /** Tells whether times are unsigned seconds in 32 bits, and others become wrong ones when it is closed. */
    static boolean keepsTimesIn32Bits(FileSystem system) {
        return isZip(system);
    }

    private static boolean isZip(FileSystem system) {
        return system.provider().getScheme().equals(ZIP_SCHEME);
    }
}
