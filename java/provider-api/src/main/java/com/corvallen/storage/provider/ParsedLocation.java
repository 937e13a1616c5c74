package com.corvallen.storage.provider;

import java.util.List;

/** The parts of a location whose text is valid. Immutable. */
final class ParsedLocation {
    final StorageURI location;

    /** In lower case. */
    final String scheme;

    /** As written, percent-encoded. */
    final String rawMount;

    /** Percent-decoded. */
    final String mountName;

    /** As written, without empty ones. */
    final List<String> rawSegments;

    /** Percent-decoded, without empty ones. */
    final List<String> segments;

    ParsedLocation(
            StorageURI location,
            String scheme,
            String rawMount,
            String mountName,
            List<String> rawSegments,
            List<String> segments) {
        this.location = location;
        this.scheme = scheme;
        this.rawMount = rawMount;
        this.mountName = mountName;
        this.rawSegments = List.copyOf(rawSegments);
        this.segments = List.copyOf(segments);
    }

    String parentText() {
        int count = rawSegments.size();
        return textOf(rawSegments.subList(0, Math.max(0, count - 1)));
    }

    String childText(String name) throws ProviderException {
        String encoded = PercentCoding.encode(location, SegmentNames.check(location, name));
        String base = textOf(rawSegments);
        return base.endsWith("/") ? base + encoded : base + "/" + encoded;
    }

    private String textOf(List<String> raw) {
        return scheme + "://" + rawMount + "/" + String.join("/", raw);
    }
}
