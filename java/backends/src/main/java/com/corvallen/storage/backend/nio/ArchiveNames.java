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
 * What an archive is called, and what its entries are. Looks for names in a zip archive that are both a file and a
 * folder. The platform's file system for archives shows the file and hides what is in the folder, and anyone who
 * copies everything would lose it silently.
 */
final class ArchiveNames {
    private ArchiveNames() {}

    /** Returns the archive on the default file system that a URI names, links followed; null if it names none. */
    static Path archiveOf(URI uri) throws IOException {
        String inner = uri.getRawSchemeSpecificPart();
        if (!"jar".equalsIgnoreCase(uri.getScheme()) || !inner.startsWith("file:")) {
            return null;
        }
        int end = inner.indexOf("!/");
        return Path.of(URI.create(end < 0 ? inner : inner.substring(0, end))).toRealPath();
    }

    /** Refuses such an archive. */
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

    /** An archive may say "/a" and "a//b" where others say "a" and "a/b". */
    static String pathOf(ZipEntry entry) {
        return entry.getName().replaceAll("/+", "/").replaceFirst("^/", "");
    }
}
