package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertThrows;

import java.nio.charset.StandardCharsets;
import java.nio.file.InvalidPathException;
import java.util.Random;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.ValueSource;

/** Bytes to text and back. */
class RawNamesTest {
    private static byte[] bytes(String latin) {
        return latin.getBytes(StandardCharsets.ISO_8859_1);
    }

    @ParameterizedTest
    @CsvSource({
        "a\u00ffb, a\uefffb",
        "\u0080, \uef80",
        "\u00e2\u0082A, \uefe2\uef82A",
        "\u00c3(, \uefc3(",
        "\u00ed\u00a0\u0080, \uefed\uefa0\uef80",
        "\u00c0\u00af, \uefc0\uefaf",
        "\u00c3\u00a4, \u00e4",
        "\u00ff\u00c3\u00a4\u00fe, \uefff\u00e4\ueffe"
    })
    void bytesThatAreNotUtf8AreShownAsPrivateCharacters(String name, String text) {
        assertEquals(text, RawNames.decode(bytes(name)));
        assertArrayEquals(bytes(name), RawNames.encode(text));
    }

    @ParameterizedTest
    @ValueSource(strings = {"plain", "\u00e4\ud83d\ude00", "\uef7f\uf000\ufffd", ""})
    void otherTextIsItself(String text) {
        byte[] utf8 = text.getBytes(StandardCharsets.UTF_8);
        assertEquals(text, RawNames.decode(utf8));
        assertArrayEquals(utf8, RawNames.encode(text));
    }

    @Test
    void privateCharacterInANameIsShownAsItsBytes() {
        byte[] name = "x\uef80".getBytes(StandardCharsets.UTF_8);
        assertEquals("x\uefee\uefbe\uef80", RawNames.decode(name));
        assertArrayEquals(name, RawNames.encode("x\uefee\uefbe\uef80"));
    }

    @Test
    void anyBytesComeBack() {
        long seed = System.nanoTime();
        Random random = new Random(seed);
        for (int round = 0; round < 20_000; round++) {
            byte[] name = new byte[random.nextInt(12)];
            random.nextBytes(name);
            String text = RawNames.decode(name);
            assertFalse(text.contains("\ufffd") && !new String(name, StandardCharsets.UTF_8).contains("\ufffd"));
            assertArrayEquals(name, RawNames.encode(text), "seed " + seed);
        }
    }

    @ParameterizedTest
    @ValueSource(strings = {"\uefc3\uefa4", "x\uefe2\uef82\uefac", "a/\uefff", "\uefff\0", "\uefff\ud800"})
    void textThatNoNameHasIsRefused(String text) {
        assertThrows(InvalidPathException.class, () -> RawNames.nameOf(text));
    }
}
