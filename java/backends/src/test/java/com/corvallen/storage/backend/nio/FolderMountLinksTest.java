package com.corvallen.storage.backend.nio;

/** Links in a mount of a folder. */
class FolderMountLinksTest extends LinksContract {
    FolderMountLinksTest() {
        super(NioStorage::ofFolder);
    }
}
