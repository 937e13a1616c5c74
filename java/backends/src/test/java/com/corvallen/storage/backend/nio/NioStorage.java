package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import com.google.common.jimfs.Configuration;
import com.google.common.jimfs.Jimfs;
import com.google.common.jimfs.WatchServiceConfiguration;
import java.io.IOException;
import java.net.URI;
import java.nio.charset.StandardCharsets;
import java.nio.file.FileSystem;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.spi.FileSystemProvider;
import java.util.List;
import java.util.UUID;
import java.util.concurrent.TimeUnit;
import java.util.stream.Stream;
import java.util.zip.ZipOutputStream;

/** A storage under test, with direct access beside the provider; everything is removed at the end. */
final class NioStorage implements StorageUnderTest {
    /** Undoes one step. */
    private interface Cleanup {
        void run() throws IOException;
    }

    private final NioProvider provider = new NioProvider();
    private final StorageURI root;
    private final Path path;
    private final List<Cleanup> cleanups;

    private NioStorage(StorageURI root, Path path, Cleanup... cleanups) {
        this.root = root;
        this.path = path;
        this.cleanups = List.of(cleanups);
    }

    /** A folder of the default file system, without a mount. */
    static NioStorage ofDefaultFileSystem() throws IOException {
        Path folder = temporaryFolder();
        return new NioStorage(new StorageURI("java://" + folder), folder, () -> Removal.removeTree(folder));
    }

    /** A mount whose root is a new folder. */
    static NioStorage ofFolder() throws IOException {
        return ofFolder(temporaryFolder());
    }

    /** A mount of a folder that is removed at the end. */
    static NioStorage ofFolder(Path folder) {
        return mounted(folder, folder.toUri().toString(), () -> Removal.removeTree(folder));
    }

    /** A mount whose property names the folder by a link; both are removed at the end. */
    static NioStorage ofFolder(Path folder, Path link) {
        return mounted(folder, "file://" + link, () -> {
            Removal.removeTree(folder);
            Files.delete(link);
        });
    }

    /** A mount of a new zip archive, which this object keeps open like the provider. */
    static NioStorage ofArchive() throws IOException {
        Path folder = temporaryFolder();
        URI uri = URI.create("jar:" + newArchive(folder.resolve("a.zip")).toUri());
        SharedFileSystems.Lease lease = SharedFileSystems.lease(archives(), uri);
        lease.beginWriting();
        return mounted(lease.root(), uri.toString(), () -> {
            lease.close();
            Removal.removeTree(folder);
        });
    }

    /** The platform's provider of file systems for zip archives. */
    static FileSystemProvider archives() {
        return FileSystemProvider.installedProviders().stream()
                .filter(provider -> provider.getScheme().equals("jar"))
                .findAny()
                .orElseThrow();
    }

    /** A mount of a new file system in memory. */
    static NioStorage ofMemory() throws IOException {
        return ofMemory(Configuration.unix().toBuilder()
                .setWatchServiceConfiguration(WatchServiceConfiguration.polling(20, TimeUnit.MILLISECONDS))
                .build());
    }

    /** The same with a configuration. */
    static NioStorage ofMemory(Configuration configuration) throws IOException {
        FileSystem system = Jimfs.newFileSystem(UUID.randomUUID().toString(), configuration);
        Path folder = Files.createDirectories(system.getPath("/storage"));
        return mounted(folder, folder.toUri().toString(), system::close);
    }

    private static NioStorage mounted(Path path, String uri, Cleanup cleanup) {
        String name = "m" + UUID.randomUUID();
        String property = "storage.mount." + name;
        System.setProperty(property, uri);
        return new NioStorage(
                new StorageURI("java://" + name), path, () -> System.clearProperty(property), cleanup);
    }

    static Path temporaryFolder() throws IOException {
        return Files.createTempDirectory("nio-test").toRealPath();
    }

    static Path newArchive(Path file) throws IOException {
        new ZipOutputStream(Files.newOutputStream(file)).close();
        return file;
    }

    @Override
    public StorageProvider provider() {
        return provider;
    }

    @Override
    public StorageURI root() {
        return root;
    }

    @Override
    public boolean rootIsTop() {
        return root.getText().startsWith("java://m");
    }

    /** Returns the path of a location. */
    Path path(StorageURI location) throws ProviderException {
        List<String> names = location.getSegments();
        Path result = path;
        for (String name : names.subList(root.getSegments().size(), names.size())) {
            result = result.resolve(name);
        }
        return result;
    }

    /** Returns the path of a location given by its names. */
    Path path(String... names) throws ProviderException {
        return path(at(names));
    }

    @Override
    public void write(StorageURI file, String content) throws IOException, ProviderException {
        Files.write(path(file), content.getBytes(StandardCharsets.UTF_8));
    }

    @Override
    public String read(StorageURI file) throws IOException, ProviderException {
        return new String(Files.readAllBytes(path(file)), StandardCharsets.UTF_8);
    }

    @Override
    public int countEntries(StorageURI folder) throws IOException, ProviderException {
        try (Stream<Path> children = Files.list(path(folder))) {
            return (int) children.count();
        }
    }

    @Override
    public void close() throws IOException {
        for (Cleanup cleanup : cleanups) {
            cleanup.run();
        }
    }

    /** Makes a pipe. */
    StorageURI pipe(String... names) throws Exception {
        Process mkfifo = new ProcessBuilder("mkfifo", path(names).toString()).inheritIO().start();
        assertEquals(0, mkfifo.waitFor());
        return at(names);
    }
}
