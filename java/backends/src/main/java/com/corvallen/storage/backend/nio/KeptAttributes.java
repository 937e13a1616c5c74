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
 * The owner, group and permissions of a file or folder, and what users have attached to it: what it keeps when it moves
 * to another storage, and when another content takes its place. Each is given on as far as the process may and the
 * storage can. That never opens the content to more people: a group that is not the one it should be may do only what
 * everyone may. What comes from a storage without permissions gets those of any new file.
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

    /** The mode, owner and group as numbers, empty where files have none. */
    private final Map<String, Object> unix;

    /** Null where files have none. */
    private final Set<PosixFilePermission> permissions;

    private final AttachedValues attached;

    private KeptAttributes(Path path) throws IOException {
        unix = isUnix(path) ? Files.readAttributes(path, "unix:mode,uid,gid", LinkOption.NOFOLLOW_LINKS) : Map.of();
        permissions = permissionsOf(path);
        attached = AttachedValues.of(path);
    }

    /** Reads those of a file or folder, no link. */
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

    /** Gives what users have attached, beside what the file has; of two values of one name, this one stays. */
    void giveAttached(Path to) throws IOException {
        if (!attached.areIn(to)) {
            makeWritable(to);
            attached.giveTo(to);
        }
    }

    /** Gives owner, group and permissions to a copy, with the bits that let a program run as its owner. */
    void giveAccess(Path to) throws IOException {
        giveAccess(to, ALL_MODE);
    }

    /** Gives owner, group and permissions to another content. No program runs as its owner that was none before. */
    void giveAccessAnew(Path to) throws IOException {
        giveAccess(to, PERMISSIONS);
    }

    /** Makes a file what it was when this was read, after something has failed. */
    void restore(Path path, Exception reported) {
        try {
            makeWritable(path);
            attached.giveTo(path);
            attached.removeOthers(path);
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

    /** Returns what a file or folder of that kind gets in this place if nobody says what. */
    private static Set<PosixFilePermission> permissionsOfNew(Path like) throws IOException {
        Path sample = HiddenNames.beside(like);
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
            // Neither group may do meanwhile what is meant for the other one.
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

    /** Only root may give a file away, and others only to groups of their own. */
    private boolean isGiven(Path to, String name) {
        try {
            Files.setAttribute(to, name, number(unix, name), LinkOption.NOFOLLOW_LINKS);
            return true;
        } catch (IOException e) {
            return false;
        }
    }

    /** Attached values can be changed only by those who may write. */
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

    /**
     * Tells whether a process may set the permissions of a file, but only those that it has: some disks give the same
     * ones to all files.
     */
    private static boolean isFixed(Path path, int now) {
        try {
            changeMode(path, now);
            return (number(numbersOf(path), MODE) & ALL_MODE) == now;
        } catch (IOException e) {
            return false;
        }
    }

    private static void changeMode(Path path, int mode) throws IOException {
        if (!OpenFiles.briefly(path, () -> Files.setAttribute(path, MODE, mode, LinkOption.NOFOLLOW_LINKS))) {
            // Links are followed so that it is not opened; that it is none was known before.
            Files.setAttribute(path, MODE, mode);
        }
    }
}
