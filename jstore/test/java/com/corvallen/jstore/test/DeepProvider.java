package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;

/** Nested folders, {@code jstore.test.depth} deep. A folder can be removed only when it is empty. */
public final class DeepProvider extends EmptyProvider {
    private int depth = Integer.getInteger("jstore.test.depth");

    @Override
    public boolean folderExists(StorageURI location) throws ProviderException {
        return location.getSegments().size() <= depth;
    }

    @Override
    public FolderListEntry[] listFolder(StorageURI location) throws ProviderException {
        if (location.getSegments().size() == depth) {
            return new FolderListEntry[0];
        }
        return new FolderListEntry[] {new FolderListEntry("d", true)};
    }

    @Override
    public void removeFolder(StorageURI location) throws ProviderException {
        if (location.getSegments().size() != depth) {
            throw new ProviderException(ErrorCode.FOLDER_NOT_EMPTY, location);
        }
        depth--;
    }

    @Override
    public void dispose() {
        System.out.println(depth);
        System.out.flush();
    }
}
