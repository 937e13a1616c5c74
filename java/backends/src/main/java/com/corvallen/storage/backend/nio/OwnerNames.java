package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.GroupPrincipal;
import java.nio.file.attribute.PosixFileAttributes;
import java.nio.file.attribute.PosixFilePermission;
import java.nio.file.attribute.PosixFilePermissions;
import java.nio.file.attribute.UserPrincipal;
import java.util.Map;
import java.util.Set;
import java.util.concurrent.ConcurrentHashMap;
import java.util.concurrent.TimeUnit;
import java.util.function.LongSupplier;

/**
 * Reads owner, group and permissions. The system knows owners by number, and looking up a name may read a file or ask a
 * server, so names are cached for a minute. Safe on any thread.
 */
final class OwnerNames {
    static final int MAX_NAMES = 1000;
    static final long KEPT = TimeUnit.MINUTES.toNanos(1);

    private final Source source;
    private final LongSupplier clock;
    private final Map<Object, String> users = new ConcurrentHashMap<>();
    private final Map<Object, String> groups = new ConcurrentHashMap<>();
    private volatile long since;

    /** Where attributes are read. */
    @FunctionalInterface
    interface Source {
        Map<String, Object> read(Path path, String attributes) throws IOException;
    }

    OwnerNames() {
        this(Files::readAttributes, System::nanoTime);
    }

    OwnerNames(Source source, LongSupplier clock) {
        this.source = source;
        this.clock = clock;
        this.since = clock.getAsLong();
    }

    /** Adds what there is to the values: nothing if the file system has no owners. */
    void readInto(Path path, Map<String, String> values) throws IOException {
        Set<String> views = path.getFileSystem().supportedFileAttributeViews();
        if (views.contains("unix")) {
            readByNumber(path, values);
        } else if (views.contains("posix")) {
            PosixFileAttributes attributes = Files.readAttributes(path, PosixFileAttributes.class);
            put(attributes.owner().getName(), attributes.group().getName(), attributes.permissions(), values);
        }
    }

    private void readByNumber(Path path, Map<String, String> values) throws IOException {
        forgetInTime();
        Map<String, Object> found = source.read(path, "unix:uid,gid,permissions");
        String owner = users.get(found.get("uid"));
        String group = groups.get(found.get("gid"));
        if (owner == null || group == null) {
            found = source.read(path, "unix:uid,gid,owner,group,permissions");
            owner = ((UserPrincipal) found.get("owner")).getName();
            group = ((GroupPrincipal) found.get("group")).getName();
            keep(users, found.get("uid"), owner);
            keep(groups, found.get("gid"), group);
        }
        put(owner, group, permissionsOf(found), values);
    }

    @SuppressWarnings("unchecked")
    private static Set<PosixFilePermission> permissionsOf(Map<String, Object> attributes) {
        return (Set<PosixFilePermission>) attributes.get("permissions");
    }

    private static void put(
            String owner, String group, Set<PosixFilePermission> permissions, Map<String, String> values) {
        values.put("posix:owner", owner);
        values.put("posix:group", group);
        values.put("posix:permissions", PosixFilePermissions.toString(permissions));
    }

    private static void keep(Map<Object, String> names, Object number, String name) {
        if (names.size() >= MAX_NAMES) {
            names.clear();
        }
        names.put(number, name);
    }

    private void forgetInTime() {
        long now = clock.getAsLong();
        if (now - since >= KEPT) {
            since = now;
            users.clear();
            groups.clear();
        }
    }
}
