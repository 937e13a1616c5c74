package com.corvallen.storage.backend.nio;

import java.nio.file.attribute.BasicFileAttributes;
import java.nio.file.attribute.FileTime;

/** The attributes of a file on an {@link ArchiveDisk}, which has only a size. Immutable. */
final class ArchiveDiskAttributes implements BasicFileAttributes {
    private static final FileTime NO_TIME = FileTime.fromMillis(0);

    private final long size;

    ArchiveDiskAttributes(long size) {
        this.size = size;
    }

    @Override
    public FileTime lastModifiedTime() {
        return NO_TIME;
    }

    @Override
    public FileTime lastAccessTime() {
        return NO_TIME;
    }

    @Override
    public FileTime creationTime() {
        return NO_TIME;
    }

    @Override
    public boolean isRegularFile() {
        return true;
    }

    @Override
    public boolean isDirectory() {
        return false;
    }

    @Override
    public boolean isSymbolicLink() {
        return false;
    }

    @Override
    public boolean isOther() {
        return false;
    }

    @Override
    public long size() {
        return size;
    }

    @Override
    public Object fileKey() {
        return null;
    }
}
