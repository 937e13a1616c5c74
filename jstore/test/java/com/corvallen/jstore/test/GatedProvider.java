package com.corvallen.jstore.test;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.FileInputStream;
import java.io.IOException;
import java.io.InputStream;

/**
 * A storage in which some things take long. Removing a file whose name ends in {@code gated} waits until the other end
 * of the named pipe {@code jstore.test.gate} is opened and closed. Moving a folder and removing one at once do the same
 * where {@code jstore.test.waits} is set, and wait from then on for their thread to be interrupted. A folder whose name
 * ends in {@code huge} cannot be listed, for lack of memory.
 */
public final class GatedProvider extends DelegatingProvider {
    @Override
    public void removeFile(StorageURI location) throws ProviderException {
        if (location.getText().endsWith("gated")) {
            waitAtGate(location);
        }
        real.removeFile(location);
    }

    @Override
    public void removeFolder(StorageURI location) throws ProviderException {
        real.removeFolder(location);
    }

    @Override
    public void removeFolderRecursively(StorageURI location) throws ProviderException {
        waitForInterrupt(location);
        real.removeFolderRecursively(location);
    }

    @Override
    public void moveFolder(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        waitForInterrupt(source);
        real.moveFolder(source, target, replace);
    }

    @Override
    public FolderListEntry[] listFolder(StorageURI location) throws ProviderException {
        if (location.getText().endsWith("huge")) {
            throw new OutOfMemoryError("Java heap space");
        }
        return real.listFolder(location);
    }

    private static void waitAtGate(StorageURI location) throws ProviderException {
        try (InputStream gate = new FileInputStream(System.getProperty("jstore.test.gate"))) {
            while (gate.read() >= 0) {}
        } catch (IOException e) {
            throw new ProviderException(ErrorCode.UNKNOWN, location, e.getMessage(), e);
        }
    }

    private static void waitForInterrupt(StorageURI location) throws ProviderException {
        if (System.getProperty("jstore.test.waits") == null) {
            return;
        }
        waitAtGate(location);
        try {
            Thread.sleep(Long.MAX_VALUE);
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
            throw new ProviderException(ErrorCode.UNAVAILABLE, location, "interrupted", e);
        }
    }
}
