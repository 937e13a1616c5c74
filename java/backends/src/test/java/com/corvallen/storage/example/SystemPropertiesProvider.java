package com.corvallen.storage.example;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import java.nio.charset.StandardCharsets;

/** The system properties of the virtual machine as read-only files in one folder: {@code java:///java.version}. */
public final class SystemPropertiesProvider implements StorageProvider {
    @Override
    public boolean fileExists(StorageURI location) throws ProviderException {
        return valueAt(location) != null;
    }

    @Override
    public boolean folderExists(StorageURI location) throws ProviderException {
        return location.isRoot();
    }

    @Override
    public FileAttributes getFileAttributes(StorageURI location) throws ProviderException {
        return new FileAttributes(contentOf(location).length, /* lastModified= */ 0, /* writable= */ false);
    }

    @Override
    public FolderAttributes getFolderAttributes(StorageURI location) throws ProviderException {
        requireFolder(location);
        return new FolderAttributes(/* lastModified= */ 0, /* writable= */ false);
    }

    @Override
    public FolderListEntry[] listFolder(StorageURI location) throws ProviderException {
        requireFolder(location);
        return System.getProperties().stringPropertyNames().stream()
                .map(name -> new FolderListEntry(name, /* folder= */ false))
                .toArray(FolderListEntry[]::new);
    }

    @Override
    public ProviderChannel getReadOnlyChannel(StorageURI location) throws ProviderException {
        return new BytesChannel(location, contentOf(location));
    }

    /** Returns the value of the property at a location, null if there is none. */
    private static String valueAt(StorageURI location) throws ProviderException {
        return location.getSegments().size() == 1 ? System.getProperty(location.getName()) : null;
    }

    private static byte[] contentOf(StorageURI location) throws ProviderException {
        if (location.isRoot()) {
            throw new ProviderException(ErrorCode.NOT_A_FILE, location);
        }
        String value = valueAt(location);
        if (value == null) {
            throw new ProviderException(ErrorCode.NOT_FOUND, location);
        }
        return value.getBytes(StandardCharsets.UTF_8);
    }

    private static void requireFolder(StorageURI location) throws ProviderException {
        if (!location.isRoot()) {
            ErrorCode code = valueAt(location) == null ? ErrorCode.NOT_FOUND : ErrorCode.NOT_A_FOLDER;
            throw new ProviderException(code, location);
        }
    }
}
