package com.corvallen.storage.provider;

import java.util.ArrayList;
import java.util.List;
import java.util.Locale;

/** Splits the text of a location into its parts. */
final class LocationParser {
    private final StorageURI location;
    private final String text;

    LocationParser(StorageURI location) {
        this.location = location;
        this.text = location.getText();
    }

    ParsedLocation parse() throws ProviderException {
        refuse('?', "a location has no query; write a question mark in a name as %3F");
        refuse('#', "a location has no fragment; write a number sign in a name as %23");
        int colon = endOfScheme();
        int authority = colon + 3;
        int slash = text.indexOf('/', authority);
        int path = slash < 0 ? text.length() : slash;
        String rawMount = text.substring(authority, path);
        List<String> raw = rawSegments(path);
        return new ParsedLocation(
                location,
                text.substring(0, colon).toLowerCase(Locale.ROOT),
                rawMount,
                rawMount.isEmpty() ? "" : name(rawMount),
                raw,
                decoded(raw));
    }

    private void refuse(char c, String why) throws ProviderException {
        if (text.indexOf(c) >= 0) {
            throw SegmentNames.invalid(location, why);
        }
    }

    private int endOfScheme() throws ProviderException {
        int colon = text.indexOf("://");
        if (colon < 1 || !isScheme(text.substring(0, colon))) {
            throw SegmentNames.invalid(location, "a location begins with a scheme, as in java://");
        }
        return colon;
    }

    private static boolean isScheme(String scheme) {
        for (int at = 0; at < scheme.length(); at++) {
            if (!isSchemeCharacter(scheme.charAt(at))) {
                return false;
            }
        }
        return isLetter(scheme.charAt(0));
    }

    private static boolean isLetter(int c) {
        return c >= 'a' && c <= 'z' || c >= 'A' && c <= 'Z';
    }

    private static boolean isSchemeCharacter(int c) {
        return isLetter(c) || c >= '0' && c <= '9' || c == '+' || c == '-' || c == '.';
    }

    private List<String> rawSegments(int path) {
        List<String> raw = new ArrayList<>();
        int end;
        for (int start = path; start < text.length(); start = end + 1) {
            int slash = text.indexOf('/', start);
            end = slash < 0 ? text.length() : slash;
            if (end > start) {
                raw.add(text.substring(start, end));
            }
        }
        return raw;
    }

    private List<String> decoded(List<String> raw) throws ProviderException {
        List<String> names = new ArrayList<>(raw.size());
        for (String segment : raw) {
            names.add(name(segment));
        }
        return names;
    }

    private String name(String raw) throws ProviderException {
        return SegmentNames.check(location, PercentCoding.decode(location, raw));
    }
}
