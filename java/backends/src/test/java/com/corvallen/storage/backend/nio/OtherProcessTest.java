package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.StorageURI;
import java.net.URI;
import java.nio.file.Files;
import java.nio.file.Path;
import org.junit.jupiter.api.Test;

/** What needs a second process: locks between processes, and a locale that this process does not have. */
class OtherProcessTest extends NioTestCase {
    OtherProcessTest() {
        super(NioStorage::ofDefaultFileSystem);
    }

    @Test
    void exclusiveChannelsExcludeEachOtherAcrossProcesses() throws Exception {
        StorageURI a = file("hello", "a");
        try (OtherProcess other = new OtherProcess("C.UTF-8")) {
            assertEquals("ok 0", other.ask("hold", a));
            assertFails(ErrorCode.IN_USE, a, () -> provider.getChannel(a, false, /* truncate= */ true, true));
            assertFails(ErrorCode.IN_USE, a, () -> provider.getChannel(a, false, /* truncate= */ true, false));
            assertFile("hello", a);
            assertEquals("ok", other.ask("release", a));
            provider.getChannel(a, false, false, /* exclusive= */ true).close();
        }
    }

    @Test
    void otherProcessIsHeldOffUntilTheChannelIsClosed() throws Exception {
        StorageURI a = file("hello", "a");
        try (OtherProcess other = new OtherProcess("C.UTF-8")) {
            try (ProviderChannel channel = provider.getChannel(a, false, false, /* exclusive= */ true)) {
                assertEquals(5, channel.size());
                assertEquals("IN_USE", other.ask("hold", a));
                assertEquals("IN_USE", other.ask("write", a));
            }
            assertFile("hello", a);
            assertEquals("ok", other.ask("write", a));
            assertFile("", a);
        }
    }

    @Test
    void localeWithoutUmlautsKeepsThem() throws Exception {
        StorageURI umlaut = file("x", "\u00e4");
        StorageURI odd = at("\uefff");
        Files.createFile(Path.of(URI.create("file://" + path() + "/%FF")));
        try (OtherProcess other = new OtherProcess("C")) {
            String listed = other.ask("list", at());
            assertTrue(listed.contains(" " + umlaut), listed);
            assertTrue(listed.contains(" " + odd), listed);
            assertEquals("ok", other.ask("write", umlaut));
            assertEquals("ok", other.ask("create", at("\u00fc")));
        }
        assertFile("", umlaut);
        assertFile("", at("\u00fc"));
        assertEquals(3, storage.countEntries(at()));
    }
}
