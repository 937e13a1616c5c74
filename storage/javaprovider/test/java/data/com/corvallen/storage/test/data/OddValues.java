package com.corvallen.storage.test.data;

import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.test.Script;

/** Value objects that are none of the contract's classes: complete ones, ones that lack a getter, ones that throw. */
public final class OddValues {
    private OddValues() {}

    /** What attributes and storage information have in common here: they note who asks. */
    public static class Noting {
        static <T> T noted(String getter, T value) {
            Script.note(getter);
            return value;
        }
    }

    /** Has all that attributes of files and folders need. */
    public static class Attributes extends Noting {
        public boolean isWritable() {
            return noted("isWritable", true);
        }

        public long getLastModified() {
            return noted("getLastModified", 1500L);
        }

        public long getSize() {
            return noted("getSize", 42L);
        }
    }

    /** Enough for a folder. */
    public static class WithoutSize extends Noting {
        public boolean isWritable() {
            return noted("isWritable", true);
        }

        public long getLastModified() {
            return noted("getLastModified", 1500L);
        }
    }

    /** Lacks the time. */
    public static class WithoutLastModified extends Noting {
        public boolean isWritable() {
            return noted("isWritable", true);
        }

        public long getSize() {
            return noted("getSize", 42L);
        }
    }

    /** Lacks the flag. */
    public static class WithoutWritable extends Noting {
        public long getLastModified() {
            return noted("getLastModified", 1500L);
        }

        public long getSize() {
            return noted("getSize", 42L);
        }
    }

    /** Fails when it is asked for the size. */
    public static final class FailingSize extends Attributes {
        @Override
        public long getSize() {
            throw new IllegalStateException("no size");
        }
    }

    /** Fails when it is asked for the time. */
    public static final class FailingLastModified extends Attributes {
        @Override
        public long getLastModified() {
            throw new IllegalStateException("no time");
        }
    }

    /** Has all that storage information needs. */
    public static class Space extends Noting {
        public long getStorageCapacity() {
            return noted("getStorageCapacity", 1000L);
        }

        public long getSpaceOccupied() {
            return noted("getSpaceOccupied", 10L);
        }
    }

    /** Lacks the occupied space. */
    public static final class WithoutOccupied extends Noting {
        public long getStorageCapacity() {
            return noted("getStorageCapacity", 1000L);
        }
    }

    /** Lacks the capacity. */
    public static final class WithoutCapacity extends Noting {
        public long getSpaceOccupied() {
            return noted("getSpaceOccupied", 10L);
        }
    }

    /** Fails when it is asked for the occupied space. */
    public static final class FailingOccupied extends Space {
        @Override
        public long getSpaceOccupied() {
            throw new IllegalStateException("no idea");
        }
    }

    /** Has all that extended attributes need. */
    public static final class Extended extends Noting {
        public ExtendedAttribute[] getAllAttributes() {
            return noted("getAllAttributes", new ExtendedAttribute[] {new ExtendedAttribute("odd", "yes")});
        }
    }

    /** Has nothing. */
    public static final class Nothing {}
}
