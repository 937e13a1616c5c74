package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.io.InputStream;
import java.io.OutputStream;
import java.nio.file.Path;
import java.util.Enumeration;
import java.util.HashSet;
import java.util.Set;
import java.util.zip.CRC32;
import java.util.zip.CheckedInputStream;
import java.util.zip.ZipEntry;
import java.util.zip.ZipException;
import java.util.zip.ZipFile;

/**
 * Reads a new archive back, because the platform's file system for archives silently leaves out what it cannot write.
 * Every name must be there with its size. Content that was written is read and its checksum compared. An entry that was
 * copied from the old archive must have the same sizes, checksum and time, and begin where the directory says.
 */
final class ArchiveCheck {
    private final ZipFile written;
    private final ArchiveInventory expected;
    private final Set<String> found = new HashSet<>();

    private ArchiveCheck(ZipFile written, ArchiveInventory expected) {
        this.written = written;
        this.expected = expected;
    }

    /**
     * Throws ZipException if the new archive is not what it should be.
     *
     * @param original the archive that the unchanged entries were copied from
     */
    static void check(ZipFile written, ArchiveInventory expected, Path original) throws IOException {
        ArchiveCheck check = new ArchiveCheck(written, expected);
        try (ZipFile old = new ZipFile(original.toFile())) {
            check.checkEntries(old);
        }
        check.checkNames(expected.files());
        check.checkNames(expected.emptyFolders());
    }

    private void checkEntries(ZipFile old) throws IOException {
        for (Enumeration<? extends ZipEntry> all = written.entries(); all.hasMoreElements(); ) {
            ZipEntry entry = all.nextElement();
            String name = ArchiveNames.pathOf(entry);
            found.add(name);
            if (entry.isDirectory()) {
                continue;
            }
            Long size = expected.sizeOf(name);
            if (size == null || size != entry.getSize()) {
                throw failure(entry, "has " + entry.getSize() + " bytes, not " + size);
            }
            checkContent(entry, old);
        }
    }

    private void checkNames(Set<String> names) throws ZipException {
        for (String name : names) {
            if (!found.contains(name)) {
                throw new ZipException("the new archive lacks " + name);
            }
        }
    }

    private void checkContent(ZipEntry entry, ZipFile old) throws IOException {
        ZipEntry before = old.getEntry(entry.getName());
        if (before == null || !isTakenOver(before, entry)) {
            checkSum(entry);
        } else if (!begins(written, entry) && begins(old, before)) {
            throw failure(entry, "is not where it should be");
        }
    }

    private static boolean isTakenOver(ZipEntry before, ZipEntry entry) {
        return before.getCrc() == entry.getCrc()
                && before.getSize() == entry.getSize()
                && before.getCompressedSize() == entry.getCompressedSize()
                && before.getMethod() == entry.getMethod()
                && before.getTime() == entry.getTime();
    }

    private void checkSum(ZipEntry entry) throws IOException {
        CRC32 sum = new CRC32();
        long size;
        try (InputStream content = new CheckedInputStream(written.getInputStream(entry), sum)) {
            size = content.transferTo(OutputStream.nullOutputStream());
        }
        if (size != entry.getSize() || sum.getValue() != entry.getCrc()) {
            throw failure(entry, "reads back as something else");
        }
    }

    /** Returns whether the entry's own header, and its first byte if it has one, are where the directory says. */
    private static boolean begins(ZipFile archive, ZipEntry entry) throws IOException {
        try (InputStream content = archive.getInputStream(entry)) {
            return content.read() >= 0 || entry.getSize() == 0;
        } catch (ZipException e) {
            // No header, damaged content, or a compression method that Java does not know.
            return false;
        }
    }

    private static ZipException failure(ZipEntry entry, String what) {
        return new ZipException("in the new archive " + entry.getName() + " " + what);
    }
}
