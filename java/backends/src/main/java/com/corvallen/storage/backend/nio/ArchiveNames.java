package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.net.URI;
import java.nio.file.Path;
import java.util.Enumeration;
import java.util.HashSet;
import java.util.Set;
import java.util.zip.ZipEntry;
import java.util.zip.ZipException;
import java.util.zip.ZipFile;

/**
 * The names of an archive and of its entries. Finds names in a zip archive that are both a file and a folder: the
 * platform's file system for archives shows only the file and hides what is in the folder, so a copy of everything
 * would silently lose it.
 */
final class ArchiveNames {
    private ArchiveNames() {}

    /** Returns the archive on the default file system that a URI names, with links followed; null if it names none. */
    static Path archiveOf(URI uri) throws IOException {
        String inner = uri.getRawSchemeSpecificPart();
        if (!"jar".equalsIgnoreCase(uri.getScheme()) || !inner.startsWith("file:")) {
            return null;
        }
        int end = inner.indexOf("!/");
        return Path.of(URI.create(end < 0 ? inner : inner.substring(0, end))).toRealPath();
    }

    /** Throws ZipException if a name in an archive is both a file and a folder. */
    static void requireClear(Path archive) throws IOException {
        try (ZipFile zip = new ZipFile(archive.toFile())) {
            Set<String> files = new HashSet<>();
            for (Enumeration<? extends ZipEntry> all = zip.entries(); all.hasMoreElements(); ) {
                ZipEntry entry = all.nextElement();
                if (!entry.isDirectory()) {
                    files.add(pathOf(entry));
                }
            }
            requireClear(zip, files);
        }
    }

    private static void requireClear(ZipFile zip, Set<String> files) throws ZipException {
        for (Enumeration<? extends ZipEntry> all = zip.entries(); all.hasMoreElements(); ) {
            String name = pathOf(all.nextElement());
            for (int slash = name.indexOf('/', 1); slash > 0; slash = name.indexOf('/', slash + 1)) {
                if (files.contains(name.substring(0, slash))) {
                    throw new ZipException(name.substring(0, slash) + " is both a file and a folder");
                }
            }
        }
    }

    /** Returns the path of an entry. Some archives write "/a" and "a//b" for "a" and "a/b". */
    static String pathOf(ZipEntry entry) {
        return entry.getName().replaceAll("/+", "/").replaceFirst("^/", "");
    }
}
