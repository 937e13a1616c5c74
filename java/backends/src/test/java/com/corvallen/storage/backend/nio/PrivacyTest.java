package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import java.io.IOException;
import java.nio.file.DirectoryStream;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFilePermissions;
import java.util.Set;
import java.util.TreeSet;
import java.util.concurrent.CompletableFuture;
import java.util.concurrent.atomic.AtomicBoolean;
import org.junit.jupiter.api.Test;

/** What a move creates beside its target is closed to others until it is complete. */
class PrivacyTest extends TwoDisksCase {
    private static String permissionsOf(Path path) throws IOException {
        return PosixFilePermissions.toString(Files.getPosixFilePermissions(path));
    }

    private void permit(String permissions, String... names) throws Exception {
        Files.setPosixFilePermissions(path(names), PosixFilePermissions.fromString(permissions));
    }

    @Test
    void folderIsPrivateUntilItIsComplete() throws Exception {
        folder("a");
        folder("a", "sub");
        file("x", "a", "sub", "file");
        permit("rwxr-xr-x", "a");
        permit("rwxrwxrwx", "a", "sub");
        permit("rw-rw-rw-", "a", "sub", "file");
        TreeCopy copier = TreeCopy.begin(path("a"), disk.path("a"));
        assertEquals("rwx------", permissionsOf(disk.path("a")));
        copier.fill();
        assertEquals("rwxr-xr-x", permissionsOf(disk.path("a")));
        assertEquals("rwxrwxrwx", permissionsOf(disk.path("a", "sub")));
        assertEquals("rw-rw-rw-", permissionsOf(disk.path("a", "sub", "file")));
    }

    @Test
    void fileIsPrivateFromItsFirstMoment() throws Exception {
        ByteCopy.create(path("a")).close();
        assertEquals("rw-------", permissionsOf(path("a")));
    }

    @Test
    void nobodyElseEverGetsIntoAPrivateFolderThatMoves() throws Exception {
        folder("private");
        for (int i = 0; i < 100; i++) {
            file("secret", "private", "file" + i);
        }
        permit("rwx------", "private");
        AtomicBoolean done = new AtomicBoolean();
        CompletableFuture<Set<String>> seen = CompletableFuture.supplyAsync(() -> permissionsUntil(done));
        provider.moveFolder(at("private"), disk.at("moved"), /* replace= */ false);
        done.set(true);
        assertEquals(Set.of("rwx------"), seen.get());
    }

    /** Watches what appears where the folder arrives, until it has arrived. */
    private Set<String> permissionsUntil(AtomicBoolean done) {
        Set<String> seen = new TreeSet<>();
        boolean last;
        do {
            last = done.get();
            try (DirectoryStream<Path> entries = Files.newDirectoryStream(disk.path())) {
                for (Path entry : entries) {
                    seen.add(permissionsOf(entry));
                }
            } catch (NoSuchFileException e) {
                // It has its final name by now.
            } catch (Exception e) {
                throw new AssertionError(e);
            }
        } while (!last);
        assertFalse(seen.isEmpty());
        return seen;
    }
}
