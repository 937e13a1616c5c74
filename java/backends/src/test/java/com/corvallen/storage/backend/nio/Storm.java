package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.util.Random;

/** Changes a folder at random: creates, writes, removes and renames files and folders, two levels deep. */
final class Storm implements Runnable {
    private final Path folder;
    private final Random random;
    private final int steps;

    Storm(Path folder, long seed, int steps) {
        this.folder = folder;
        this.random = new Random(seed);
        this.steps = steps;
    }

    @Override
    public void run() {
        for (int i = 0; i < steps; i++) {
            try {
                step();
            } catch (FileSystemException e) {
                // Another storm was faster, or something is in the way; go on with the next step.
                continue;
            } catch (IOException e) {
                throw new AssertionError(e);
            }
        }
    }

    private Path any() {
        Path path = folder.resolve("n" + random.nextInt(6));
        return random.nextBoolean() ? path : path.resolve("n" + random.nextInt(4));
    }

    private void step() throws IOException {
        switch (random.nextInt(6)) {
            case 0:
                Files.createFile(any());
                break;
            case 1:
                Files.createDirectory(any());
                break;
            case 2:
                Files.delete(any());
                break;
            case 3:
                Removal.removeTree(any());
                break;
            case 4:
                Files.move(any(), any(), StandardCopyOption.ATOMIC_MOVE);
                break;
            default:
                Files.write(any(), new byte[random.nextInt(10)]);
                break;
        }
    }
}
