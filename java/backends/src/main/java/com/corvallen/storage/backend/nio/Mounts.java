package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.util.List;
import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;

/** The mounts of one provider, opened when they are first needed. Safe on any thread. */
final class Mounts {
    private static final String SCHEME = "java";

    /** By name; the empty name is the default file system. Changed only under this object's lock. */
    private final Map<String, Mount> mounts = new ConcurrentHashMap<>();

    private volatile boolean disposed;

    /**
     * Returns the tree that a location lies in.
     *
     * @throws ProviderException with INVALID_LOCATION for what is not a location of this back end, UNAVAILABLE if the
     *     mount is not defined or cannot be opened, or the provider is disposed of
     */
    Mount of(StorageURI location) throws ProviderException {
        String name = mountNameOf(location);
        Mount mount = mounts.get(name);
        return mount != null && mount.isOpen() ? mount : open(name, location);
    }

    /** Throws INVALID_LOCATION for what is not a location of this back end. */
    static void requireLocation(StorageURI location) throws ProviderException {
        mountNameOf(location);
    }

    private static String mountNameOf(StorageURI location) throws ProviderException {
        if (location == null) {
            throw new ProviderException(ErrorCode.INVALID_LOCATION, null, "no location");
        }
        if (!location.getScheme().equals(SCHEME)) {
            throw new ProviderException(
                    ErrorCode.INVALID_LOCATION, location, "locations begin with " + SCHEME + "://, unlike " + location);
        }
        return location.getMountName();
    }

    private synchronized Mount open(String name, StorageURI location) throws ProviderException {
        if (disposed) {
            throw new ProviderException(ErrorCode.UNAVAILABLE, location, "the provider is disposed of");
        }
        Mount known = mounts.get(name);
        if (known != null && known.isOpen()) {
            return known;
        }
        forget(name);
        Mount mount = name.isEmpty() ? Mount.ofDefaultFileSystem() : MountProperty.open(name, location);
        mounts.put(name, mount);
        return mount;
    }

    /** Closes everything, and refuses to open anything later. */
    void dispose() {
        try {
            close();
        } catch (ProviderException e) {
            logLoss(e);
        }
    }

    /**
     * Closes everything even if something fails, and then throws the first failure, with the others suppressed in it.
     */
    synchronized void close() throws ProviderException {
        disposed = true;
        ProviderException first = null;
        for (String name : List.copyOf(mounts.keySet())) {
            try {
                close(name);
            } catch (ProviderException e) {
                first = joined(first, e);
            }
        }
        if (first != null) {
            throw first;
        }
    }

    private static ProviderException joined(ProviderException first, ProviderException next) {
        if (first == null) {
            return next;
        }
        first.addSuppressed(next);
        return first;
    }

    private void forget(String name) {
        try {
            close(name);
        } catch (ProviderException e) {
            logLoss(e);
        }
    }

    private void close(String name) throws ProviderException {
        Mount mount = mounts.remove(name);
        if (mount != null) {
            Failures.translated(new StorageURI(SCHEME + "://" + name + "/"), mount::close);
        }
    }

    /** Logged because no caller is left: what was written to an archive may be lost now. */
    private static void logLoss(ProviderException failure) {
        Log.error("Cannot close a mount; what was written to it may be lost", failure);
    }
}
