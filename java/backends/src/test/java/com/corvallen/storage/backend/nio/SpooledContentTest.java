package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.file.Path;
import java.util.Arrays;
import java.util.Random;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/** Compares contents in a spool with arrays of bytes. */
class SpooledContentTest {
    private static final int LARGEST = 5 * Spool.BLOCK;

    private Path folder;
    private Spool spool;
    private SteadyFile disk;

    @BeforeEach
    void open() throws Exception {
        folder = NioStorage.temporaryFolder();
        spool = new Spool(() -> disk = UnnamedFile.open(folder.resolve("a.zip")));
    }

    @AfterEach
    void cleanUp() throws Exception {
        spool.close();
        Removal.removeTree(folder);
    }

    /** A content and the bytes that it should hold. */
    private final class Pair {
        final SpooledContent file = new SpooledContent(spool);
        byte[] model = new byte[0];

        void write(Random random) throws IOException {
            int at = random.nextInt(LARGEST);
            byte[] bytes = new byte[random.nextInt(LARGEST - at) + 1];
            random.nextBytes(bytes);
            ByteBuffer source = ByteBuffer.wrap(bytes);
            while (source.hasRemaining()) {
                assertTrue(file.write(source, at + source.position()) > 0);
            }
            model = Arrays.copyOf(model, Math.max(model.length, at + bytes.length));
            System.arraycopy(bytes, 0, model, at, bytes.length);
        }

        void truncate(Random random) throws IOException {
            int size = random.nextInt(LARGEST);
            file.truncate(size);
            model = Arrays.copyOf(model, Math.min(model.length, size));
        }

        void check() throws IOException {
            assertEquals(model.length, file.size());
            ByteBuffer content = ByteBuffer.allocate(model.length + 1);
            while (file.read(content, content.position()) >= 0) {
                assertTrue(content.position() <= model.length);
            }
            assertArrayEquals(model, Arrays.copyOf(content.array(), content.position()));
        }
    }

    @Test
    void filesHoldWhatWasWrittenToThem() throws Exception {
        long seed = System.nanoTime();
        System.out.println("seed " + seed);
        Random random = new Random(seed);
        Pair[] pairs = {new Pair(), new Pair(), new Pair()};
        for (int step = 0; step < 2000; step++) {
            Pair pair = pairs[random.nextInt(pairs.length)];
            if (random.nextInt(4) == 0) {
                pair.truncate(random);
            } else {
                pair.write(random);
            }
            pair.check();
        }
        assertTrue(disk.size() <= 3L * LARGEST, "room that was given back is used again");
        assertEquals(0, folder.toFile().list().length);
    }

    @Test
    void holesTakeNoRoom() throws Exception {
        SpooledContent file = new SpooledContent(spool);
        file.write(ByteBuffer.wrap(new byte[] {1}), 1L << 33);
        assertEquals((1L << 33) + 1, file.size());
        assertTrue(disk.size() <= Spool.BLOCK);
        ByteBuffer hole = ByteBuffer.allocate(10);
        assertTrue(file.read(hole, 1L << 20) > 0);
        assertEquals(0, hole.get(0));
    }

    @Test
    void noFileIsLargerThanCanBeCounted() {
        SpooledContent file = new SpooledContent(spool);
        assertThrows(IOException.class, () -> file.write(ByteBuffer.wrap(new byte[] {1}), Long.MAX_VALUE - 1));
    }

    @Test
    void closedSpoolHoldsNothing() throws Exception {
        SpooledContent file = new SpooledContent(spool);
        file.write(ByteBuffer.wrap(new byte[] {1}), 0);
        spool.close();
        assertThrows(IOException.class, () -> file.read(ByteBuffer.allocate(1), 0));
    }
}
