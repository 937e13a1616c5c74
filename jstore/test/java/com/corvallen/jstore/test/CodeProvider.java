package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.util.List;

/**
 * Refuses to remove {@code java:///NAME} with the error code of that name; names no location for {@code NAME/nowhere},
 * and gives {@code NAME/why/MESSAGE} that message.
 */
public final class CodeProvider extends EmptyProvider {
    @Override
    public void removeFile(StorageURI location) throws ProviderException {
        List<String> names = location.getSegments();
        boolean nowhere = names.contains("nowhere");
        String message = names.contains("why") ? names.get(names.size() - 1) : null;
        throw new ProviderException(ErrorCode.valueOf(names.get(0)), nowhere ? null : location, message);
    }
}
