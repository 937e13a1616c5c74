package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.io.IOException;
import java.nio.file.Path;
import java.nio.file.attribute.GroupPrincipal;
import java.nio.file.attribute.PosixFilePermission;
import java.util.HashMap;
import java.util.Map;
import java.util.Set;
import org.junit.jupiter.api.Test;

/** Names of owners are looked up once, and again after a while. */
class OwnerNamesTest {
    private static final Path ANY = Path.of("any");

    private final Map<Integer, String> database = new HashMap<>(Map.of(1, "one", 2, "two"));
    private int uid = 1;
    private int lookups;
    private long now;
    private final OwnerNames owners = new OwnerNames(this::read, () -> now);

    private Map<String, Object> read(Path path, String attributes) {
        Map<String, Object> result = new HashMap<>();
        result.put("uid", uid);
        result.put("gid", 7);
        result.put("permissions", Set.of(PosixFilePermission.OWNER_READ));
        if (attributes.contains("owner")) {
            lookups++;
            result.put("owner", named(database.getOrDefault(uid, Integer.toString(uid))));
            result.put("group", named("group"));
        }
        return result;
    }

    private static GroupPrincipal named(String name) {
        return () -> name;
    }

    private String owner() throws IOException {
        Map<String, String> values = new HashMap<>();
        owners.readInto(ANY, values);
        assertEquals("group", values.get("posix:group"));
        assertEquals("r--------", values.get("posix:permissions"));
        return values.get("posix:owner");
    }

    @Test
    void nameIsLookedUpOnce() throws IOException {
        for (int i = 0; i < 10; i++) {
            uid = 1;
            assertEquals("one", owner());
            uid = 2;
            assertEquals("two", owner());
        }
        assertEquals(2, lookups);
    }

    @Test
    void nameIsLookedUpAgainAfterAMinute() throws IOException {
        assertEquals("one", owner());
        database.put(1, "other");
        now += OwnerNames.KEPT - 1;
        assertEquals("one", owner());
        now += 1;
        assertEquals("other", owner());
    }

    @Test
    void onlySoManyAreKept() throws IOException {
        for (uid = 0; uid <= OwnerNames.MAX_NAMES; uid++) {
            owner();
        }
        int before = lookups;
        for (uid = 0; uid <= OwnerNames.MAX_NAMES; uid++) {
            owner();
        }
        assertTrue(lookups > before, "all were kept");
    }
}
