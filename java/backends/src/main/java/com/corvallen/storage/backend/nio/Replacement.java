package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.Path;

/**
 * Renames a file to the name of another one. It takes over owner, group, permissions and attached values before it can
 * be seen there. Nothing is forced to disk, or a copy of many files would wait for the disk once for each.
 */
final class Replacement {
    private Replacement() {}

    static void rename(Path from, Path to) throws IOException, ProviderException {
        KeptAttributes own = KeptAttributes.of(from);
        KeptAttributes replaced = KeptAttributes.of(to);
        try {
            replaced.giveAttached(from);
            replaced.giveAccessAnew(from);
            Renaming.rename(from, to, /* replace= */ true);
        } catch (IOException | RuntimeException | ProviderException e) {
            own.restore(from, e);
            throw e;
        }
    }
}
