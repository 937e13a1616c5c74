package com.corvallen.storage.backend.nio;

/** The jail of a mount in memory. */
class MemoryMountJailTest extends JailContract {
    MemoryMountJailTest() {
        super(NioStorage::ofMemory);
    }
}
