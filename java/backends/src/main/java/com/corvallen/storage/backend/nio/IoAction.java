package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;

/** Something to do on a file system. */
@FunctionalInterface
interface IoAction {
    void run() throws IOException, ProviderException;
}
