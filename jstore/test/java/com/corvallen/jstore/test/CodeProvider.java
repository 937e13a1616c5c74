package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;

/** Refuses to remove {@code java:///NAME} with the error code of that name; names no location for {@code NAME/nowhere}. */
public final class CodeProvider extends EmptyProvider {
    @Override
    public void removeFile(StorageURI location) throws ProviderException {
        String code = location.getSegments().get(0);
        boolean nowhere = location.getSegments().size() > 1;
        throw new ProviderException(ErrorCode.valueOf(code), nowhere ? null : location);
    }
}
