package com.corvallen.bench;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.ProviderStorageInfo;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;

/**
 * A back end that answers at once with what it made beforehand, so that the cost of the way to Java and back shows.
 * Every operation succeeds but the removals of folders, which fail in two ways.
 */
public final class IdleProvider implements StorageProvider {
    private static final int ATTRIBUTE_COUNT = 16;
    private static final long MODIFIED = 1_700_000_000_123L;
    private static final FileAttributes FILE = new FileAttributes(4096, MODIFIED, true);
    private static final FolderAttributes FOLDER = new FolderAttributes(MODIFIED, true);
    private static final ProviderStorageInfo STORAGE = new ProviderStorageInfo(1L << 40, 1L << 39);
    private static final ExtendedAttributes EXTENDED = new ExtendedAttributes(attributes());
    private static final ProviderChannel CHANNEL = new IdleChannel();

    private static volatile FolderListEntry[] listing = {};

    /** Makes every folder list that many entries. */
    public static void setListing(int entryCount) {
        FolderListEntry[] entries = new FolderListEntry[entryCount];
        for (int i = 0; i < entryCount; i++) {
            String number = Integer.toString(10_000_000 + i).substring(1);
            entries[i] = new FolderListEntry("document-" + number + ".txt", i % 10 == 0);
        }
        listing = entries;
    }

    private static ExtendedAttribute[] attributes() {
        ExtendedAttribute[] result = new ExtendedAttribute[ATTRIBUTE_COUNT];
        for (int i = 0; i < ATTRIBUTE_COUNT; i++) {
            result[i] = new ExtendedAttribute("user.property-" + i, "the value of it " + i);
        }
        return result;
    }

    @Override
    public boolean fileExists(StorageURI location) {
        return true;
    }

    @Override
    public boolean folderExists(StorageURI location) {
        return false;
    }

    @Override
    public void createFile(StorageURI location) {}

    @Override
    public void createFolder(StorageURI location) {}

    @Override
    public void removeFile(StorageURI location) {}

    /** Fails as a back end fails on purpose. */
    @Override
    public void removeFolder(StorageURI location) throws ProviderException {
        throw new ProviderException(ErrorCode.FOLDER_NOT_EMPTY, location);
    }

    /** Fails as a back end fails by mistake. */
    @Override
    public void removeFolderRecursively(StorageURI location) {
        throw new IllegalStateException("not today");
    }

    @Override
    public void moveFile(StorageURI source, StorageURI target, boolean replace) {}

    @Override
    public void moveFolder(StorageURI source, StorageURI target, boolean replace) {}

    @Override
    public FileAttributes getFileAttributes(StorageURI location) {
        return FILE;
    }

    @Override
    public FolderAttributes getFolderAttributes(StorageURI location) {
        return FOLDER;
    }

    @Override
    public void setLastModified(StorageURI location, long lastModified) {}

    @Override
    public FolderListEntry[] listFolder(StorageURI location) {
        return listing;
    }

    @Override
    public ProviderChannel getChannel(StorageURI location, boolean create, boolean truncate, boolean exclusive) {
        return CHANNEL;
    }

    @Override
    public ProviderChannel getReadOnlyChannel(StorageURI location) {
        return CHANNEL;
    }

    @Override
    public ExtendedAttributes getExtendedAttributes(StorageURI location) {
        return EXTENDED;
    }

    @Override
    public ProviderStorageInfo getProviderStorageInfo(StorageURI location) {
        return STORAGE;
    }

    @Override
    public void publishEventsFor(StorageURI location, EventPublisher publisher) {
        EventSource.setBridge(publisher);
    }
}
