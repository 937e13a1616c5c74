package com.corvallen.storage.backend.nio;

import java.io.IOException;
import java.nio.file.FileSystems;
import java.nio.file.Files;
import java.nio.file.LinkOption;
import java.nio.file.Path;
import java.nio.file.attribute.PosixFileAttributeView;
import java.nio.file.attribute.PosixFilePermission;
import java.util.Map;
import java.util.Set;

/**
 * The owner, group, permissions and user attributes of a file or folder. It keeps them when it moves to another
 * storage, and when another content takes its place. Each is passed on if the process may and the storage can. That
 * never gives more people access: if the group cannot be set, the group gets only the rights of everyone. What comes
 * from a storage without permissions gets those of a new file.
 */
final class KeptAttributes {
    private static final String MODE = "unix:mode";
    private static final String OWNER = "unix:uid";
    private static final String GROUP = "unix:gid";

    private static final int PERMISSIONS = 0777;
    private static final int SET_ID = 06000;
    private static final int OF_OWNER = 0700;
    private static final int OF_GROUP = 0070;
    private static final int OF_OTHERS = 0007;
    private static final int ALL_MODE = 07777;

    /** The mode, owner and group as numbers; empty where files have none. */
    private final Map<String, Object> unix;

    /** Null where files have none. */
    private final Set<PosixFilePermission> permissions;

    private final UserAttributeValues userAttributes;

    private KeptAttributes(Path path) throws IOException {
        unix = isUnix(path) ? Files.readAttributes(path, "unix:mode,uid,gid", LinkOption.NOFOLLOW_LINKS) : Map.of();
        permissions = permissionsOf(path);
        userAttributes = UserAttributeValues.of(path);
    }

    /** Reads those of a file or folder, not of a link. */
    static KeptAttributes of(Path path) throws IOException {
        return new KeptAttributes(path);
    }

    private static boolean isUnix(Path path) {
        return path.getFileSystem().equals(FileSystems.getDefault())
                && path.getFileSystem().supportedFileAttributeViews().contains("unix");
    }

    private static Set<PosixFilePermission> permissionsOf(Path path) throws IOException {
        PosixFileAttributeView view = posixViewOf(path);
        return view == null ? null : view.readAttributes().permissions();
    }

    private static PosixFileAttributeView posixViewOf(Path path) {
        return Files.getFileAttributeView(path, PosixFileAttributeView.class, LinkOption.NOFOLLOW_LINKS);
    }

    /** Adds the user attributes to those of another file, replacing values of the same name. */
    void giveUserAttributes(Path to) throws IOException {
        if (!userAttributes.areIn(to)) {
            makeWritable(to);
            userAttributes.giveTo(to);
        }
    }

    /** Gives owner, group and permissions to a copy, including the set-user-ID and set-group-ID bits. */
    void giveAccess(Path to) throws IOException {
        giveAccess(to, ALL_MODE);
    }

    /** Gives owner, group and permissions to another content, without the set-user-ID and set-group-ID bits. */
    void giveAccessAnew(Path to) throws IOException {
        giveAccess(to, PERMISSIONS);
    }

    /** Restores a file to what was read here, after something has failed. */
    void restore(Path path, Exception reported) {
        try {
            makeWritable(path);
            userAttributes.giveTo(path);
            userAttributes.removeOthers(path);
            giveAccess(path);
        } catch (IOException e) {
            reported.addSuppressed(e);
        }
    }

    private void giveAccess(Path to, int mask) throws IOException {
        if (!unix.isEmpty() && isUnix(to)) {
            giveNumbers(to, number(unix, MODE) & mask);
        } else if (permissions != null && posixViewOf(to) != null) {
            posixViewOf(to).setPermissions(permissions);
        } else if (permissions == null && Privacy.isKnown(to.getFileSystem())) {
            posixViewOf(to).setPermissions(permissionsOfNew(to));
        }
    }

    /** Returns the permissions that a new file or folder gets in this place by default. */
    private static Set<PosixFilePermission> permissionsOfNew(Path like) throws IOException {
        Path sample = Names.hiddenBeside(like);
        if (EntryKind.of(like, LinkOption.NOFOLLOW_LINKS) == EntryKind.FOLDER) {
            Files.createDirectory(sample);
        } else {
            Files.createFile(sample);
        }
        try {
            return permissionsOf(sample);
        } finally {
            Files.delete(sample);
        }
    }

    private void giveNumbers(Path to, int mode) throws IOException {
        Map<String, Object> now = numbersOf(to);
        boolean sameOwner = number(now, OWNER) == number(unix, OWNER);
        boolean sameGroup = number(now, GROUP) == number(unix, GROUP);
        int modeNow = number(now, MODE) & ALL_MODE;
        if (!sameOwner || !sameGroup) {
            // Until the group is set, neither group may have the rights of the other.
            setMode(to, modeNow, modeNow & OF_OWNER);
            sameGroup = sameGroup || isGiven(to, GROUP);
            sameOwner = sameOwner || isGiven(to, OWNER);
            modeNow = number(numbersOf(to), MODE) & ALL_MODE;
        }
        setMode(to, modeNow, narrowed(mode, sameOwner, sameGroup));
    }

    static int narrowed(int mode, boolean sameOwner, boolean sameGroup) {
        int result = sameOwner && sameGroup ? mode : mode & ~SET_ID;
        int everyone = result & OF_OTHERS;
        return sameGroup ? result : result & ~OF_GROUP | result & everyone << 3;
    }

    /** Returns whether it worked: only root may give a file away, and others only to groups of their own. */
    private boolean isGiven(Path to, String name) {
        try {
            Files.setAttribute(to, name, number(unix, name), LinkOption.NOFOLLOW_LINKS);
            return true;
        } catch (IOException e) {
            return false;
        }
    }

    /** User attributes can be changed only by a process that may write. */
    private static void makeWritable(Path path) throws IOException {
        if (isUnix(path)) {
            int mode = number(numbersOf(path), MODE) & ALL_MODE;
            setMode(path, mode, mode & OF_OWNER | 0600);
        }
    }

    private static Map<String, Object> numbersOf(Path path) throws IOException {
        return Files.readAttributes(path, "unix:mode,uid,gid", LinkOption.NOFOLLOW_LINKS);
    }

    private static int number(Map<String, Object> numbers, String name) {
        return (Integer) numbers.get(name.substring(name.indexOf(':') + 1));
    }

    private static void setMode(Path path, int now, int mode) throws IOException {
        if (now == mode) {
            return;
        }
        try {
            changeMode(path, mode);
        } catch (IOException e) {
            if (!isFixed(path, now)) {
                throw e;
            }
        }
    }

    /** Tells whether the permissions can be set, but only to what they are: some disks give all files the same. */
    private static boolean isFixed(Path path, int now) {
        try {
            changeMode(path, now);
            return (number(numbersOf(path), MODE) & ALL_MODE) == now;
        } catch (IOException e) {
            return false;
        }
    }

    private static void changeMode(Path path, int mode) throws IOException {
        if (!FileUses.briefly(path, () -> Files.setAttribute(path, MODE, mode, LinkOption.NOFOLLOW_LINKS))) {
            // Java opens the file unless links are followed; this is known not to be one.
            Files.setAttribute(path, MODE, mode);
        }
    }
}
