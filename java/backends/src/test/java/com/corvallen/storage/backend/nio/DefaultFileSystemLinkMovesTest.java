package com.corvallen.storage.backend.nio;

/** Moves with links on the default file system, without a mount. */
class DefaultFileSystemLinkMovesTest extends LinkMovesContract {
    DefaultFileSystemLinkMovesTest() {
        super(NioStorage::ofDefaultFileSystem);
    }
}
