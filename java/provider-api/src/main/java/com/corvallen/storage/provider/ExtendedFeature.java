package com.corvallen.storage.provider;

/**
 * Optional features that a host may ask a back end about. The native host looks the constants up by name, so they have
 * the host's spelling. The host has four more features, which it never asks a back end in Java about, because none has
 * them: atomic copies, transactional streams, a writable flag and canonical locations. The first two work nevertheless,
 * because the host builds them from channels and {@link StorageProvider#moveFile}.
 */
public enum ExtendedFeature {
    /** {@link StorageProvider#removeFolderRecursively} removes a folder and everything in it in one call. */
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
     * with {@link #AllowsMovesAndDeletesWhenOpen} has this one too.
     */
    AllowsMovesAndDeletesWhenOpenReadOnly
}
