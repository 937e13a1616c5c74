package com.corvallen.storage.backend.nio;

/** Moves with links in a file system in memory. */
class MemoryMountLinkMovesTest extends LinkMovesContract {
    MemoryMountLinkMovesTest() {
        super(NioStorage::ofMemory);
    }
}
