package com.corvallen.storage.backend.nio;

/** Links in a file system in memory. */
class MemoryMountLinksTest extends LinksContract {
    MemoryMountLinksTest() {
        super(NioStorage::ofMemory);
    }
}
