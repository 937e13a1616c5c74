package com.corvallen.storage.backend.nio;

/** Moves with links in a mount of a folder. */
class FolderMountLinkMovesTest extends LinkMovesContract {
    FolderMountLinkMovesTest() {
        super(NioStorage::ofFolder);
    }
}
