package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertSame;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.StorageURI;
import com.google.common.jimfs.Configuration;
import java.io.IOException;
import java.nio.ByteBuffer;
import java.nio.charset.StandardCharsets;
import java.nio.file.AccessDeniedException;
import java.nio.file.FileSystemException;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.attribute.FileTime;
import java.nio.file.attribute.PosixFilePermissions;
import java.nio.file.attribute.UserDefinedFileAttributeView;
import java.util.ArrayList;
import java.util.LinkedHashMap;
import java.util.List;
import java.util.Map;
import java.util.stream.Collectors;
import org.junit.jupiter.api.Assumptions;
import org.junit.jupiter.api.Nested;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.ValueSource;

/** User attributes, on file systems that have them. */
class UserAttributesTest {
    @ParameterizedTest
    @CsvSource({"text, text", "'', ''", "base64:, base64:YmFzZTY0Og==", "base6, base6", "\u00e4, base64:5A=="})
    void valueIsTextOrBase64(String latin, String text) {
        assertEquals(text, UserAttributeTexts.textOf(latin.getBytes(StandardCharsets.ISO_8859_1)));
    }

    @Test
    void valueWithANulIsBase64() {
        assertEquals("base64:YQBi", UserAttributeTexts.textOf(new byte[] {'a', 0, 'b'}));
        assertEquals("base64:AA==", UserAttributeTexts.textOf(new byte[] {0}));
    }

    @Test
    void valueOfUtf8IsItself() {
        String text = "h\u00e4llo \ud83d\ude00";
        assertEquals(text, UserAttributeTexts.textOf(text.getBytes(StandardCharsets.UTF_8)));
    }

    @Test
    void archiveHasBasicAttributesOnly() throws Exception {
        NioStorage storage = NioStorage.ofArchive();
        try {
            storage.provider().createFile(storage.at("a"));
            Map<String, String> all = read(storage, storage.at("a"));
            assertTrue(all.keySet().stream().allMatch(name -> name.startsWith("basic:")), all::toString);
            assertEquals("0", all.get("basic:size"));
        } finally {
            storage.tearDown();
        }
    }

    /** Attributes that behave as the platform's do. */
    private static final class View implements UserDefinedFileAttributeView {
        private final Map<String, IOException> failures;

        View(Map<String, IOException> failures) {
            this.failures = failures;
        }

        private void access(String name) throws IOException {
            if (failures.containsKey(name)) {
                throw failures.get(name);
            }
        }

        @Override
        public String name() {
            return "user";
        }

        @Override
        public List<String> list() throws IOException {
            access("list");
            return List.of("a", "b", "c");
        }

        @Override
        public int size(String name) throws IOException {
            access(name);
            return 1;
        }

        @Override
        public int read(String name, ByteBuffer target) {
            target.put((byte) 'v');
            return 1;
        }

        @Override
        public int write(String name, ByteBuffer source) {
            throw new UnsupportedOperationException();
        }

        @Override
        public void delete(String name) {
            throw new UnsupportedOperationException();
        }
    }

    private static Map<String, String> readFrom(View view) throws Exception {
        Path path = Path.of("").toAbsolutePath();
        Found found = new Found(new StorageURI("java://" + path), path, EntryKind.attributesOf(path));
        Map<String, String> values = new LinkedHashMap<>();
        new UserAttributeTexts(found, view).readInto(values);
        return values;
    }

    @Test
    void valueThatCannotBeReadIsLeftOut() throws Exception {
        Map<String, IOException> failures = Map.of(
                "a", new AccessDeniedException("f"), "b", new FileSystemException("f", null, "No data available"));
        assertEquals(Map.of("user:c", "v"), readFrom(new View(failures)));
    }

    @ParameterizedTest
    @ValueSource(strings = {"Permission denied", "Operation not supported", "something else"})
    void attributesThatCannotBeReadAreLeftOut(String reason) throws Exception {
        assertEquals(Map.of(), readFrom(new View(Map.of("list", new FileSystemException("f", null, reason)))));
    }

    /** What may be readable another time is not reported as missing. */
    @ParameterizedTest
    @ValueSource(strings = {"Too many open files", "Input/output error"})
    void storageThatFailsIsReported(String reason) {
        for (String where : List.of("list", "b")) {
            FileSystemException failure = new FileSystemException("f", null, reason);
            assertSame(failure, assertThrows(IOException.class, () -> readFrom(new View(Map.of(where, failure)))));
        }
    }

    private static Map<String, String> read(StorageUnderTest storage, StorageURI location) throws Exception {
        Map<String, String> result = new LinkedHashMap<>();
        for (ExtendedAttribute attribute : storage.provider().getExtendedAttributes(location).getAllAttributes()) {
            result.put(attribute.getName(), attribute.getValue());
        }
        return result;
    }

    /** Cases for a file system with all three views. */
    abstract static class Cases extends NioTestCase {
        Cases(StorageUnderTest.Opener opener) {
            super(opener);
        }

        private void attach(Path path, String name, byte[] value) throws Exception {
            UserDefinedFileAttributeView view = Files.getFileAttributeView(path, UserDefinedFileAttributeView.class);
            Assumptions.assumeTrue(
                    Files.getFileStore(path).supportsFileAttributeView("user"), "this disk keeps no attributes");
            view.write(name, ByteBuffer.wrap(value));
        }

        @Test
        void attachedAttributesAreRead() throws Exception {
            StorageURI a = file("x", "a");
            attach(path("a"), "text", "h\u00e4llo".getBytes(StandardCharsets.UTF_8));
            attach(path("a"), "empty", new byte[0]);
            attach(path("a"), "bytes", new byte[] {(byte) 0xff, 1});
            Map<String, String> all = UserAttributesTest.read(storage, a);
            assertEquals("h\u00e4llo", all.get("user:text"));
            assertEquals("", all.get("user:empty"));
            assertEquals("base64:/wE=", all.get("user:bytes"));
            assertEquals(3, all.keySet().stream().filter(name -> name.startsWith("user:")).count());
        }

        @Test
        void folderHasThemToo() throws Exception {
            StorageURI a = folder("a");
            attach(path("a"), "text", new byte[] {'v'});
            assertEquals("v", UserAttributesTest.read(storage, a).get("user:text"));
        }

        @Test
        void theyComeInTheOrderOfTheirNames() throws Exception {
            StorageURI a = file("x", "a");
            attach(path("a"), "b", new byte[] {'2'});
            attach(path("a"), "a", new byte[] {'1'});
            List<String> names = new ArrayList<>(UserAttributesTest.read(storage, a).keySet());
            assertEquals(names.stream().sorted().collect(Collectors.toList()), names);
        }

        @Test
        void basicAndPosixAttributesAreRead() throws Exception {
            StorageURI a = file("hello", "a");
            Files.setPosixFilePermissions(path("a"), PosixFilePermissions.fromString("rwxr-x--x"));
            Files.setLastModifiedTime(path("a"), FileTime.fromMillis(1_700_000_000_123L));
            Map<String, String> all = UserAttributesTest.read(storage, a);
            assertEquals("2023-11-14T22:13:20.123Z", all.get("basic:lastModifiedTime"));
            assertEquals("false", all.get("basic:isSymbolicLink"));
            assertEquals("true", all.get("basic:isRegularFile"));
            assertEquals("5", all.get("basic:size"));
            assertEquals("rwxr-x--x", all.get("posix:permissions"));
            assertEquals(Files.getOwner(path("a")).getName(), all.get("posix:owner"));
            assertFalse(all.get("posix:group").isEmpty());
            assertTrue(all.containsKey("basic:creationTime") && all.containsKey("basic:lastAccessTime"));
        }
    }

    @Nested
    class OnDisk extends Cases {
        OnDisk() {
            super(NioStorage::ofFolder);
        }

        @Test
        void fileThatCannotBeReadHasTheOthers() throws Exception {
            StorageURI a = file("hello", "a");
            Files.setPosixFilePermissions(path("a"), PosixFilePermissions.fromString("-w-------"));
            Assumptions.assumeFalse(Files.isReadable(path("a")), "permissions do not stop this user");
            Map<String, String> all = UserAttributesTest.read(storage, a);
            assertEquals("5", all.get("basic:size"));
            assertEquals("-w-------", all.get("posix:permissions"));
        }
    }

    @Nested
    class InMemory extends Cases {
        InMemory() {
            super(() -> NioStorage.ofMemory(
                    Configuration.unix().toBuilder().setAttributeViews("basic", "owner", "posix", "user").build()));
        }
    }
}
