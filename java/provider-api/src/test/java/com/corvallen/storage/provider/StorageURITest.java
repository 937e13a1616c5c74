package com.corvallen.storage.provider;

import static com.corvallen.storage.provider.Assertions.assertFails;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertSame;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;
import org.junit.jupiter.params.provider.ValueSource;

class StorageURITest {
    private static StorageURI uri(String text) {
        return new StorageURI(text);
    }

    private static void assertInvalid(String text) {
        ProviderException failure = assertFails(ErrorCode.INVALID_LOCATION, uri(text)::getSegments);
        assertEquals(text, failure.getLocationString());
    }

    @Test
    void partsAreTakenApart() throws ProviderException {
        StorageURI location = uri("java://photos/2024/a%20b.jpg");
        assertEquals("java", location.getScheme());
        assertEquals("photos", location.getMountName());
        assertEquals(List.of("2024", "a b.jpg"), location.getSegments());
        assertEquals("a b.jpg", location.getName());
        assertFalse(location.isRoot());
    }

    @Test
    void nullCountsAsEmptyText() {
        assertEquals("", uri(null).getText());
        assertEquals(uri(""), uri(null));
        assertInvalid("");
    }

    @ParameterizedTest
    @ValueSource(strings = {"", "nonsense", "%", "java://a/%zz", "\ud800", "\0"})
    void anyTextIsKept(String text) {
        assertSame(text, uri(text).getText());
        assertSame(text, uri(text).toString());
    }

    @ParameterizedTest
    @ValueSource(strings = {"java://", "java:///", "java:////", "java://m", "java://m/", "JAVA://m//"})
    void locationWithoutNamesIsTheRoot(String text) throws ProviderException {
        assertTrue(uri(text).isRoot());
        assertEquals("", uri(text).getName());
        assertEquals("java", uri(text).getScheme());
        assertTrue(uri(text).getParent().isRoot());
    }

    @ParameterizedTest
    @ValueSource(strings = {"java:///a/b", "java:///a/b/", "java:////a///b//"})
    void emptySegmentsAreLeftOut(String text) throws ProviderException {
        assertEquals(List.of("a", "b"), uri(text).getSegments());
    }

    @ParameterizedTest
    @ValueSource(
            strings = {"/a", "java:/a", "java:a", "://a", "1java://a", "ja va://a", "jäva://a", "a/b://c", "file"})
    void textWithoutSchemeIsInvalid(String text) {
        assertInvalid(text);
    }

    @ParameterizedTest
    @ValueSource(
            strings = {"java:///.", "java:///a/..", "java:///../a", "java:///a/./b", "java:///%2e", "java:///%2E%2e/a"})
    void relativePartsAreInvalidHoweverTheyAreWritten(String text) {
        assertInvalid(text);
    }

    @ParameterizedTest
    @ValueSource(
            strings = {
                "java:///a%2Fb", "java:///%2f", "java:///..%2fa", "java:///a%00b", "java:///a\0b", "java://m%2Fn/a"
            })
    void encodedSlashAndNulAreInvalid(String text) {
        assertInvalid(text);
    }

    @ParameterizedTest
    @ValueSource(strings = {"java://..", "java://%2e%2e/a", "java://./a"})
    void relativeMountNameIsInvalid(String text) {
        assertInvalid(text);
    }

    @ParameterizedTest
    @ValueSource(strings = {"java:///%", "java:///a%4", "java:///%4g", "java:///%g4", "java:///%-1", "java:///%٣٣"})
    void brokenPercentIsInvalid(String text) {
        assertInvalid(text);
    }

    @ParameterizedTest
    @ValueSource(
            strings = {
                "java:///%ff", "java:///%c3", "java:///%c3/%a4",
                "java:///%c3x%a4", "java:///%c0%af", "java:///%ed%a0%80"
            })
    void percentEncodedBytesMustBeUtf8(String text) {
        assertInvalid(text);
    }

    @ParameterizedTest
    @CsvSource({"java:///a?b, %3F", "java:///?, %3F", "java:///a#b, %23", "java://m#, %23"})
    void queryAndFragmentAreInvalidWithAHint(String text, String hint) {
        ProviderException failure = assertFails(ErrorCode.INVALID_LOCATION, uri(text)::getSegments);
        assertTrue(failure.getMessage().contains(hint), failure.getMessage());
    }

    @ParameterizedTest
    @CsvSource({
        "%C3%A4, ä",
        "%F0%9F%98%80, \ud83d\ude00",
        "a%20b, a b",
        "a b, a b",
        "ä, ä",
        "%3F%23%25, ?#%",
        "a%5Cb, a\\b",
        "..., ...",
        "%2525, %25",
        "a+b, a+b",
        "%0A, '\n'"
    })
    void namesAreDecoded(String raw, String name) throws ProviderException {
        assertEquals(List.of(name), uri("java:///" + raw).getSegments());
    }

    @ParameterizedTest
    @CsvSource({
        "java://m/a/b, java://m/a",
        "java://m/a, java://m/",
        "java://m/, java://m/",
        "java:///a%20b//c/, java:///a%20b"
    })
    void parentLosesTheLastName(String child, String parent) throws ProviderException {
        assertEquals(parent, uri(child).getParent().getText());
    }

    @ParameterizedTest
    @ValueSource(strings = {"plain", "a b", "100%", "?#", "ä\ud83d\ude00", "a\\b", "a%2Fb", "+:@", "\n", "...", "~"})
    void resolvedChildHasTheNameItWasGiven(String name) throws ProviderException {
        StorageURI child = uri("java://m/folder/").resolve(name);
        assertEquals(List.of("folder", name), child.getSegments());
        assertTrue(child.getText().chars().allMatch(c -> c > ' ' && c < 0x7f), child.getText());
        assertEquals(uri("java://m/folder"), child.getParent());
    }

    @Test
    void childOfTheRootHasOneSlash() throws ProviderException {
        assertEquals("java://m/a", uri("java://m").resolve("a").getText());
        assertEquals("java:///a", uri("java://").resolve("a").getText());
    }

    @ParameterizedTest
    @ValueSource(strings = {"", ".", "..", "a/b", "/", "a\0", "\ud800", "a\udc00b"})
    void whatIsNoNameCannotBeResolved(String name) {
        assertFails(ErrorCode.INVALID_LOCATION, () -> uri("java://m").resolve(name));
    }

    @Test
    void nullNameCannotBeResolved() {
        assertFails(ErrorCode.INVALID_LOCATION, () -> uri("java://m").resolve(null));
    }

    @Test
    void equalityIsThatOfTheText() {
        assertEquals(uri("java:///a"), uri("java:///a"));
        assertEquals(uri("java:///a").hashCode(), uri("java:///a").hashCode());
        assertNotEquals(uri("java:///a"), uri("java:///a/"));
        assertNotEquals(uri("java:///a"), "java:///a");
    }

    @Test
    void segmentsCannotBeChanged() throws ProviderException {
        List<String> segments = uri("java:///a").getSegments();
        assertThrows(UnsupportedOperationException.class, () -> segments.add("b"));
    }
}
