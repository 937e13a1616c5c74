package com.corvallen.storage.test.defaults;

import com.google.common.jimfs.Configuration;
import com.google.common.jimfs.Jimfs;
import java.io.IOException;
import java.io.UncheckedIOException;
import java.nio.file.FileSystem;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.Comparator;
import java.util.Map;
import java.util.UUID;
import java.util.concurrent.ConcurrentHashMap;
import java.util.stream.Stream;
import java.util.zip.ZipOutputStream;

/** Makes storages for NioProvider, each with an empty folder in it. */
public final class Storages {
    private interface Cleanup {
        void run() throws IOException;
    }

    private static final Map<String, Cleanup> CLEANUPS = new ConcurrentHashMap<>();

    private Storages() {}

    /** Makes a storage of the kind and returns the location of its root. */
    public static String make(String kind) throws IOException {
        switch (kind) {
            case "DefaultFileSystem":
                return ofDefaultFileSystem();
            case "MemoryMount":
                return ofMemory();
            case "ArchiveMount":
                return ofArchive();
            default:
                throw new IllegalArgumentException(kind);
        }
    }

    /** Removes the storage whose root it is. */
    public static void drop(String root) throws IOException {
        CLEANUPS.remove(root).run();
    }

    private static String ofDefaultFileSystem() throws IOException {
        Path folder = temporaryFolder();
        String root = "java://" + folder;
        CLEANUPS.put(root, () -> delete(folder));
        return root;
    }

    private static String ofMemory() throws IOException {
        FileSystem system = Jimfs.newFileSystem(UUID.randomUUID().toString(), Configuration.unix());
        Path folder = Files.createDirectories(system.getPath("/storage"));
        return mounted(folder.toUri().toString(), system::close);
    }

    private static String ofArchive() throws IOException {
        Path folder = temporaryFolder();
        Path archive = folder.resolve("a.zip");
        new ZipOutputStream(Files.newOutputStream(archive)).close();
        return mounted("jar:" + archive.toUri(), () -> delete(folder));
    }

    private static String mounted(String uri, Cleanup cleanup) {
        String name = "m" + UUID.randomUUID();
        System.setProperty("storage.mount." + name, uri);
        String root = "java://" + name;
        CLEANUPS.put(root, () -> {
            System.clearProperty("storage.mount." + name);
            cleanup.run();
        });
        return root;
    }

    private static Path temporaryFolder() throws IOException {
        return Files.createTempDirectory("defaults-test").toRealPath();
    }

    private static void delete(Path folder) throws IOException {
        try (Stream<Path> tree = Files.walk(folder)) {
            tree.sorted(Comparator.reverseOrder()).forEach(Storages::deleteOne);
        }
    }

    private static void deleteOne(Path path) {
        try {
            Files.delete(path);
        } catch (IOException e) {
            throw new UncheckedIOException(e);
        }
    }
}
