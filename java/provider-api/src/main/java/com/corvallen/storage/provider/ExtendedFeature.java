package com.corvallen.storage.provider;

/**
 * Optional abilities that a host may ask a back end about. The names of the constants are what the native host looks
 * up, so they are spelt as it spells them.
 */
public enum ExtendedFeature {
    /** {@link StorageProvider#removeFolderRecursively} removes a folder with everything in it, in one call. */
    RecursiveFolderRemoval,

    /** {@link StorageProvider#publishEventsFor} on a folder also reports what happens below its subfolders. */
    RecursiveChangeEvents,

    /**
     * {@link StorageProvider#moveFile}, {@link StorageProvider#removeFile} and their folder counterparts work while a
     * channel from {@link StorageProvider#getChannel} is open on the file.
     */
    AllowsMovesAndDeletesWhenOpen,

    /**
     * The same while only channels from {@link StorageProvider#getReadOnlyChannel} are open on the file. A back end
     * with {@link #AllowsMovesAndDeletesWhenOpen} has this one as well.
     */
    AllowsMovesAndDeletesWhenOpenReadOnly
}
