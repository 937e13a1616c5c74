package com.corvallen.storage.backend.nio;

/** Links on the default file system, without a mount. */
class DefaultFileSystemLinksTest extends LinksContract {
    DefaultFileSystemLinksTest() {
        super(NioStorage::ofDefaultFileSystem);
    }
}
