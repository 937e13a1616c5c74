package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import java.io.IOException;
import java.nio.file.FileVisitOption;
import java.nio.file.FileVisitResult;
import java.nio.file.Files;
import java.nio.file.NoSuchFileException;
import java.nio.file.NotDirectoryException;
import java.nio.file.Path;
import java.nio.file.SimpleFileVisitor;
import java.nio.file.attribute.BasicFileAttributes;
import java.util.ArrayList;
import java.util.EnumSet;
import java.util.List;

/**
 * Lists the children of one folder. Uses a file tree walk one level deep, because a walk also returns the attributes
 * that the system sends with the names. Where the system sends none, each child costs one call.
 */
final class Listing extends SimpleFileVisitor<Path> {
    private final StorageURI folder;
    private final Path start;
    private final Mount mount;
    private final List<FolderListEntry> entries = new ArrayList<>();

    private Listing(StorageURI folder, Path start, Mount mount) {
        super();
        this.folder = folder;
        this.start = start;
        this.mount = mount;
    }

    static FolderListEntry[] of(Found found, Mount mount) throws IOException, ProviderException {
        found.requireFolder();
        Path start = startOf(found);
        Listing listing = new Listing(found.location, start, mount);
        Files.walkFileTree(start, EnumSet.noneOf(FileVisitOption.class), /* maxDepth= */ 1, listing);
        return listing.entries.toArray(new FolderListEntry[0]);
    }

    /** Resolves a link, because a walk does not enter one, not even at its start. */
    private static Path startOf(Found found) throws IOException {
        Path start = found.openedPath();
        return start.equals(found.path) && Files.isSymbolicLink(start) ? start.toRealPath() : start;
    }

    @Override
    public FileVisitResult visitFile(Path child, BasicFileAttributes attributes) throws IOException {
        if (child.equals(start)) {
            throw new NotDirectoryException(start.toString());
        }
        String name = Names.of(child);
        boolean isFolder = attributes.isSymbolicLink() ? leadsToFolder(name) : attributes.isDirectory();
        entries.add(new FolderListEntry(name, isFolder));
        return FileVisitResult.CONTINUE;
    }

    /** Leaves out what was removed while the folder was read. */
    @Override
    public FileVisitResult visitFileFailed(Path child, IOException failure) throws IOException {
        if (failure instanceof NoSuchFileException && !child.equals(start)) {
            return FileVisitResult.CONTINUE;
        }
        throw failure;
    }

    /** A link whose name no location can contain counts as a file, because it cannot be followed from here. */
    private boolean leadsToFolder(String name) {
        try {
            return mount.leadsToFolder(folder.resolve(name));
        } catch (ProviderException e) {
            return false;
        }
    }
}
