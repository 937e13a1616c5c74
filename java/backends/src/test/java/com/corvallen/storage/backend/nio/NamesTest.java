package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.google.common.jimfs.Configuration;
import com.google.common.jimfs.Jimfs;
import java.net.URI;
import java.nio.file.FileSystem;
import java.nio.file.FileSystems;
import java.nio.file.Path;
import java.util.List;
import java.util.Map;
import java.util.Random;
import java.util.stream.Collectors;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;

/** Several names resolve at once as they do one by one. */
class NamesTest {
    private static final String[] PARTS = {
        "a", "b c", ".", "\\", ":", "*", "%2F", "\u00e4", "e\u0301", "\ud83d\ude00", "\ud800", "\ufffd", "\uef80",
        "\uefff", "\uefc3\uefa4"
    };

    private static final int ROUNDS = 20_000;

    private static Object oneByOne(Path root, List<String> names) {
        try {
            Path path = root;
            for (String name : names) {
                path = Names.child(path, name);
            }
            return path;
        } catch (IllegalArgumentException e) {
            return "refused";
        }
    }

    private static Object atOnce(Path root, List<String> names) {
        try {
            return Names.below(root, names);
        } catch (IllegalArgumentException e) {
            return "refused";
        }
    }

    private static String anyName(Random random) {
        return Stream.generate(() -> PARTS[random.nextInt(PARTS.length)])
                .limit(1 + random.nextInt(3))
                .collect(Collectors.joining());
    }

    private static void assertSame(Path root) {
        long seed = System.nanoTime();
        Random random = new Random(seed);
        for (int round = 0; round < ROUNDS; round++) {
            List<String> names = Stream.generate(() -> anyName(random))
                    .limit(random.nextInt(5))
                    .collect(Collectors.toList());
            assertEquals(oneByOne(root, names), atOnce(root, names), () -> names + ", seed " + seed);
        }
    }

    @Test
    void onDisk() {
        assertSame(Path.of("/"));
        assertSame(Path.of("/folder/mount"));
    }

    @Test
    void inMemory() throws Exception {
        for (Configuration kind : List.of(Configuration.unix(), Configuration.osX(), Configuration.windows())) {
            try (FileSystem system = Jimfs.newFileSystem(kind)) {
                assertSame(system.getRootDirectories().iterator().next());
            }
        }
    }

    @Test
    void inAnArchive() throws Exception {
        Path folder = NioStorage.temporaryFolder();
        URI uri = URI.create("jar:" + NioStorage.newArchive(folder.resolve("a.zip")).toUri());
        try (FileSystem system = FileSystems.newFileSystem(uri, Map.of())) {
            assertSame(system.getPath("/"));
        }
        Removal.removeTree(folder);
    }
}
