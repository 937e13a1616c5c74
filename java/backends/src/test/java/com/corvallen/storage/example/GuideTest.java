package com.corvallen.storage.example;

import static org.junit.jupiter.api.Assertions.assertNotNull;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageProvider;
import java.io.IOException;
import java.lang.reflect.Method;
import java.nio.charset.StandardCharsets;
import java.nio.file.Files;
import java.nio.file.Path;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.EnumSource;
import org.junit.jupiter.params.provider.ValueSource;

/** The guides say what the code says. They are found by two system properties, which the build sets. */
class GuideTest {
    private static Path folder(String property) {
        String value = System.getProperty(property);
        assertNotNull(value, "run with -D" + property + "=...");
        return Path.of(value);
    }

    private static String read(Path file) throws IOException {
        return new String(Files.readAllBytes(file), StandardCharsets.UTF_8);
    }

    private static String guide(String name) throws IOException {
        return read(folder("storage.docs").resolve(name));
    }

    @ParameterizedTest
    @ValueSource(strings = {"SystemPropertiesProvider.java", "BytesChannel.java"})
    void exampleIsQuotedWordForWord(String name) throws IOException {
        Path source = folder("storage.sources").resolve("com/corvallen/storage/example").resolve(name);
        assertTrue(guide("back-ends.md").contains("```java\n" + read(source) + "```\n"), name);
    }

    @ParameterizedTest
    @EnumSource(ErrorCode.class)
    void numberOfEveryCodeIsInTheContract(ErrorCode code) throws IOException {
        assertTrue(guide("contract.md").contains("| " + code.getNumber() + " | `" + code + "` |"));
    }

    @Test
    void everyOperationIsInTheContract() throws IOException {
        String contract = guide("contract.md");
        for (Method method : StorageProvider.class.getMethods()) {
            assertTrue(contract.contains("`" + method.getName() + "`"), method.getName());
        }
    }
}
