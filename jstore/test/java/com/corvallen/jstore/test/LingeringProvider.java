package com.corvallen.jstore.test;

import com.corvallen.storage.provider.StorageURI;
import java.util.concurrent.CountDownLatch;

/** Leaves a thread running that would keep a virtual machine alive for ever. */
public final class LingeringProvider extends EmptyProvider {
    /** Starts the thread. */
    public LingeringProvider() {
        CountDownLatch never = new CountDownLatch(1);
        new Thread(() -> waitFor(never)).start();
    }

    private static void waitFor(CountDownLatch latch) {
        try {
            latch.await();
        } catch (InterruptedException e) {
            Thread.currentThread().interrupt();
        }
    }

    @Override
    public void createFile(StorageURI location) {}
}
