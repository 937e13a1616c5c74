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
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/** What a move makes beside its target is closed to others until it is what it shall be. */
class PrivacyTest extends NioTestCase {
    private NioStorage disk;

    PrivacyTest() {
        super(NioStorage::ofFolder);
    }

    @BeforeEach
    void open() throws IOException {
        disk = OtherDisk.open();
    }

    @AfterEach
    void close() throws Exception {
        disk.tearDown();
    }

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
        TreeCopier copier = TreeCopier.begin(path("a"), disk.path("a"));
        assertEquals("rwx------", permissionsOf(disk.path("a")));
        copier.fill();
        assertEquals("rwxr-xr-x", permissionsOf(disk.path("a")));
        assertEquals("rwxrwxrwx", permissionsOf(disk.path("a", "sub")));
        assertEquals("rw-rw-rw-", permissionsOf(disk.path("a", "sub", "file")));
    }

    @Test
    void fileIsPrivateFromItsFirstMoment() throws Exception {
        ContentCopy.create(path("a")).close();
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

    /** Watches whatever appears where the folder arrives; it has arrived before this ends. */
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
                // It has got its name by now.
            } catch (Exception e) {
                throw new AssertionError(e);
            }
        } while (!last);
        assertFalse(seen.isEmpty());
        return seen;
    }
}
