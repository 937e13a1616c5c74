package com.corvallen.storage.provider;

import java.util.Objects;

/** One child in the listing of a folder. Immutable; safe on any thread; no getter throws. */
public final class FolderListEntry {
    private final String name;
    private final boolean folder;

    /**
     * Creates the entry of a child.
     *
     * @param name the child's name, not percent-encoded and without a path: {@code "a b.txt"}. The host reads it up to
     *     the first NUL character, and {@code null} as an empty name
     * @param folder true for a folder, false for a file
     */
    public FolderListEntry(String name, boolean folder) {
        this.name = name;
        this.folder = folder;
    }

    /**
     * Returns the child's name.
     *
     * @return the name as it was given, {@code null} included
     */
    public String getName() {
        return name;
    }

    /**
     * Returns whether the child is a folder.
     *
     * @return true for a folder, false for a file
     */
    public boolean isFolder() {
        return folder;
    }

    @Override
    public boolean equals(Object other) {
        if (!(other instanceof FolderListEntry)) {
            return false;
        }
        FolderListEntry that = (FolderListEntry) other;
        return folder == that.folder && Objects.equals(name, that.name);
    }

    @Override
    public int hashCode() {
        return Objects.hashCode(name) * 31 + Boolean.hashCode(folder);
    }

    @Override
    public String toString() {
        return "FolderListEntry[" + name + (folder ? "/]" : "]");
    }
}
