package com.corvallen.storage.backend.nio;

/** The jail of a mount of a folder. */
class FolderMountJailTest extends JailContract {
    FolderMountJailTest() {
        super(NioStorage::ofFolder);
    }
}
