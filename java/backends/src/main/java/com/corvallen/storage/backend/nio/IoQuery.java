package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;

/** Something to find out from a file system. */
@FunctionalInterface
interface IoQuery<T> {
    T run() throws IOException, ProviderException;
}
