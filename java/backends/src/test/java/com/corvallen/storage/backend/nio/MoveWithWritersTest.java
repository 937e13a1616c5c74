package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.StandardCopyOption;
import java.util.concurrent.atomic.AtomicBoolean;
import java.util.concurrent.atomic.AtomicInteger;
import org.junit.jupiter.api.Test;

/** Others write to a folder while it moves to another disk: nothing is removed that was not copied. */
class MoveWithWritersTest extends TwoDisksCase {
    private static final int MEGABYTES = Integer.parseInt(System.getenv().getOrDefault("MOVE_MEGABYTES", "20"));

    private CopiedEntries copyOfTree() throws Exception {
        folder("a");
        folder("a", "sub");
        folder("a", "sub", "deep");
        file("1", "a", "file");
        file("2", "a", "sub", "file");
        file("3", "a", "sub", "deep", "file");
        return TreeCopy.begin(path("a"), disk.path("a")).fill();
    }

    @Test
    void whatWasCopiedIsRemoved() throws Exception {
        SourceRemoval.remove(path("a"), copyOfTree());
        assertMissing(at("a"));
        assertEquals("3", disk.read(disk.at("a", "sub", "deep", "file")));
    }

    @Test
    void whatCameAfterTheCopyStaysAndIsReported() throws Exception {
        CopiedEntries copied = copyOfTree();
        file("new", "a", "sub", "new");
        folder("a", "sub", "newFolder");
        file("new", "a", "sub", "newFolder", "file");
        InUseException failure = assertThrows(InUseException.class, () -> SourceRemoval.remove(path("a"), copied));
        assertTrue(failure.getReason().contains("during the move"), failure.getReason());
        assertFile("new", at("a", "sub", "new"));
        assertFile("new", at("a", "sub", "newFolder", "file"));
        assertMissing(at("a", "file"));
        assertMissing(at("a", "sub", "deep"));
    }

    @Test
    void whatWasChangedOrReplacedAfterTheCopyStays() throws Exception {
        CopiedEntries copied = copyOfTree();
        write(path("a", "file"), "changed");
        Path other = write(path("other"), "9");
        Files.setLastModifiedTime(other, Files.getLastModifiedTime(path("a", "sub", "file")));
        Files.move(other, path("a", "sub", "file"), StandardCopyOption.ATOMIC_MOVE);
        assertThrows(InUseException.class, () -> SourceRemoval.remove(path("a"), copied));
        assertFile("changed", at("a", "file"));
        assertFile("9", at("a", "sub", "file"));
        assertMissing(at("a", "sub", "deep"));
    }

    @Test
    void linkInThePlaceOfACopiedFolderLeadsNowhere() throws Exception {
        CopiedEntries copied = copyOfTree();
        Files.move(path("a", "sub"), path("elsewhere"));
        link("../elsewhere", "a", "sub");
        assertThrows(InUseException.class, () -> SourceRemoval.remove(path("a"), copied));
        assertFile("2", at("elsewhere", "file"));
        assertTrue(Files.isSymbolicLink(path("a", "sub")));
    }

    @Test
    void everyFileThatIsWrittenMeanwhileIsSomewhere() throws Exception {
        folder("a");
        folder("a", "early");
        folder("a", "z");
        Files.write(path("a", "z", "big"), new byte[MEGABYTES << 20]);
        AtomicBoolean done = new AtomicBoolean();
        AtomicInteger written = new AtomicInteger();
        Path early = path("a", "early");
        Thread writer = new Thread(() -> writeUntil(done, early, written));
        writer.start();
        ErrorCode code = codeOfMove();
        done.set(true);
        writer.join();
        int stayed = 0;
        for (int i = 0; i < written.get(); i++) {
            boolean isThere = Files.exists(path("a", "early", "late" + i));
            assertTrue(isThere || Files.exists(disk.path("b", "early", "late" + i)), "late" + i + " is lost");
            stayed += isThere ? 1 : 0;
        }
        System.out.println(written + " files were written while a folder moved; " + stayed + " stayed, none was lost");
        assertEquals(stayed > 0 ? ErrorCode.IN_USE : null, code);
        assertEquals((long) MEGABYTES << 20, Files.size(disk.path("b", "z", "big")));
        assertFalse(Files.exists(path("a", "z")));
    }

    private ErrorCode codeOfMove() throws Exception {
        try {
            provider.moveFolder(at("a"), disk.at("b"), /* replace= */ false);
            return null;
        } catch (ProviderException e) {
            return e.getErrorCode();
        }
    }

    /** Writes until the folder is gone or the move has ended. */
    private static void writeUntil(AtomicBoolean done, Path folder, AtomicInteger written) {
        try {
            while (!done.get()) {
                write(folder.resolve("late" + written), "x");
                written.incrementAndGet();
                Thread.sleep(1);
            }
        } catch (IOException | InterruptedException e) {
            // The folder has been removed, so this file was never created.
        }
    }
}
