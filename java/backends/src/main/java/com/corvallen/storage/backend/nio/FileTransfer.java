package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.Path;
import java.nio.file.attribute.BasicFileAttributes;

/** Moves a file or link to where a rename does not lead: as a private copy that takes the target's name at the end. */
final class FileTransfer {
    private FileTransfer() {}

    static void transfer(Entry source, Entry target, boolean replace) throws IOException, ProviderException {
        Transfers.requireMovable(source);
        Path temporary = HiddenNames.beside(target.path);
        BasicFileAttributes copied;
        try {
            KeptAttributes replaced = replace && FileMove.isRegular(target) ? KeptAttributes.of(target.path) : null;
            OpenFolder folder = OpenFolder.named(source.path.getParent());
            copied = EntryCopy.copy(folder, source.path.getFileName(), temporary, replaced);
            Interruption.check();
            Renaming.renameAnyhow(temporary, target.path, replace);
            Durability.forceFolder(target.path.getParent());
        } catch (IOException | RuntimeException | ProviderException e) {
            Transfers.discard(temporary, e);
            throw e;
        }
        if (!SpareName.removeUnchanged(source.path, copied)) {
            throw new InUseException(
                    source.path.toString(), "was copied, but has changed since, and is still where it was");
        }
    }
}
