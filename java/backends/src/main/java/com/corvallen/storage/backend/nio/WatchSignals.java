package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileSystem;
import java.nio.file.Path;
import java.nio.file.StandardWatchEventKinds;
import java.nio.file.WatchKey;
import java.nio.file.WatchService;
import java.util.concurrent.TimeUnit;

/** The signals of a file system's own watch service. */
final class WatchSignals implements Signals {
    private final WatchService service;

    private WatchSignals(WatchService service) {
        this.service = service;
    }

    static Signals open(FileSystem system) throws IOException {
        return new WatchSignals(system.newWatchService());
    }

    @Override
    public WatchKey register(Path folder) throws IOException {
        return folder.register(
                service,
                StandardWatchEventKinds.ENTRY_CREATE,
                StandardWatchEventKinds.ENTRY_DELETE,
                StandardWatchEventKinds.ENTRY_MODIFY);
    }

    @Override
    public WatchKey poll(long nanos) throws InterruptedException {
        return service.poll(nanos, TimeUnit.NANOSECONDS);
    }

    @Override
    public void close() throws IOException {
        service.close();
    }
}
