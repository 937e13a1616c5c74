package com.corvallen.storage.provider;

import java.util.List;

/**
 * The location of a file or folder: {@code java://mount/folder/file%20name}.
 *
 * <p>The host creates one for every location that it passes. The constructor takes any text, including {@code null}.
 * The text is parsed only when a part of it is asked for; if it cannot be parsed, that throws a {@link
 * ProviderException} with {@link ErrorCode#INVALID_LOCATION}.
 *
 * <p>The form is <code>scheme://mount/segment/segment</code>:
 *
 * <ul>
 *   <li>The mount is the text between {@code //} and the next slash. It may be empty, as in {@code java:///tmp}.
 *   <li>A segment is percent-encoded UTF-8. Characters that a URI may not contain are accepted unencoded, except {@code
 *       ?} and {@code #}: queries and fragments have no meaning here, so these two must be written as {@code %3F} and
 *       {@code %23}.
 *   <li>Each segment is exactly one name. A segment is rejected if it is {@code .} or {@code ..}, encoded or not, or
 *       contains an encoded slash or NUL, so no back end can mistake it for a path.
 *   <li>Empty segments are ignored: {@code java:///a//b/} is {@code java:///a/b}.
 * </ul>
 *
 * <p>Two locations are equal if their texts are equal, character by character. Different texts may denote the same
 * file. Immutable; safe on any thread.
 */
public final class StorageURI {
    private final String text;

    /** The parts, once parsed. Parsing twice gives equal parts, so a race between threads is harmless. */
    private volatile ParsedLocation parsed;

    /**
     * Creates a location from its text. Never throws.
     *
     * @param text any text; {@code null} counts as empty
     */
    public StorageURI(String text) {
        this.text = text == null ? "" : text;
    }

    /**
     * Returns the text exactly as it was passed.
     *
     * @return the text; empty for {@code null}
     */
    public String getText() {
        return text;
    }

    /**
     * Returns the scheme, in lower case.
     *
     * @return for example {@code "java"}
     * @throws ProviderException with INVALID_LOCATION if the text is not a location
     */
    public String getScheme() throws ProviderException {
        return parse().scheme;
    }

    /**
     * Returns the name of the mount: the text between {@code //} and the path, percent-decoded.
     *
     * @return the name, empty for {@code java:///path}
     * @throws ProviderException with INVALID_LOCATION if the text is not a location
     */
    public String getMountName() throws ProviderException {
        return parse().mountName;
    }

    /**
     * Returns the names from the root to this location, percent-decoded, the outermost first.
     *
     * @return an unmodifiable list, empty for the root; no name is empty, {@code .} or {@code ..}, or contains a slash
     *     or NUL
     * @throws ProviderException with INVALID_LOCATION if the text is not a location
     */
    public List<String> getSegments() throws ProviderException {
        return parse().segments;
    }

    /**
     * Returns the last name of the path, percent-decoded.
     *
     * @return the name, empty for the root
     * @throws ProviderException with INVALID_LOCATION if the text is not a location
     */
    public String getName() throws ProviderException {
        List<String> segments = getSegments();
        return segments.isEmpty() ? "" : segments.get(segments.size() - 1);
    }

    /**
     * Returns whether the location is the root of its mount.
     *
     * @return true if it has no segments
     * @throws ProviderException with INVALID_LOCATION if the text is not a location
     */
    public boolean isRoot() throws ProviderException {
        return getSegments().isEmpty();
    }

    /**
     * Returns the location of the parent folder.
     *
     * @return the parent; the root's parent is the root
     * @throws ProviderException with INVALID_LOCATION if the text is not a location
     */
    public StorageURI getParent() throws ProviderException {
        return new StorageURI(parse().parentText());
    }

    /**
     * Returns the location of a child. This method percent-encodes the name, so any name from a folder listing can be
     * used.
     *
     * @param childName one name, not percent-encoded
     * @return the child's location
     * @throws ProviderException with INVALID_LOCATION if this text is not a location, or if the name is null, empty,
     *     {@code .} or {@code ..}, contains a slash or NUL, or is not valid UTF-16
     */
    public StorageURI resolve(String childName) throws ProviderException {
        return new StorageURI(parse().childText(childName));
    }

    private ParsedLocation parse() throws ProviderException {
        ParsedLocation result = parsed;
        if (result == null) {
            result = new LocationParser(this).parse();
            parsed = result;
        }
        return result;
    }

    @Override
    public boolean equals(Object other) {
        return other instanceof StorageURI && text.equals(((StorageURI) other).text);
    }

    @Override
    public int hashCode() {
        return text.hashCode();
    }

    /** Returns the text, like {@link #getText()}. */
    @Override
    public String toString() {
        return text;
    }
}
