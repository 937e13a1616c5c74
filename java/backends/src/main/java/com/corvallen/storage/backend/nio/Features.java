package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ExtendedFeature;
import java.util.function.Predicate;
import java.util.stream.Stream;

/**
 * Tells which features are available. A feature has no location, so it is available only if the default file system and
 * every configured mount have it.
 */
final class Features {
    private Features() {}

    static boolean has(ExtendedFeature feature) {
        if (feature == null) {
            return false;
        }
        switch (feature) {
            case RecursiveFolderRemoval:
            case RecursiveChangeEvents:
                return true;
            case AllowsMovesAndDeletesWhenOpen:
                return everywhere(FileSystemTraits::movesOpenFiles);
            case AllowsMovesAndDeletesWhenOpenReadOnly:
                return everywhere(FileSystemTraits::movesFilesOpenForReading);
            default:
                return false;
        }
    }

    private static boolean everywhere(Predicate<String> trait) {
        try {
            return Stream.concat(Stream.of("file"), MountProperty.schemes()).allMatch(trait);
        } catch (SecurityException e) {
            // The mounts are not known, so nothing is promised. No exception may leave here.
            return false;
        }
    }
}
