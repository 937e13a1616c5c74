package com.corvallen.storage.provider;

/** The rule for what may be the name of a file or folder. */
final class SegmentNames {
    private SegmentNames() {}

    /**
     * Checks that a text is exactly one name.
     *
     * @param location the location that the exception names
     * @param name percent-decoded
     * @return the name
     * @throws ProviderException with INVALID_LOCATION if it is not a name
     */
    static String check(StorageURI location, String name) throws ProviderException {
        if (name == null || name.isEmpty()) {
            throw invalid(location, "a name must not be empty");
        }
        if (name.equals(".") || name.equals("..")) {
            throw invalid(location, "\"" + name + "\" is not a name; a location has no relative parts");
        }
        if (name.indexOf('/') >= 0) {
            throw invalid(location, "a name must not contain a slash, encoded or not");
        }
        if (name.indexOf('\0') >= 0) {
            throw invalid(location, "a name must not contain NUL");
        }
        return name;
    }

    static ProviderException invalid(StorageURI location, String why) {
        return new ProviderException(ErrorCode.INVALID_LOCATION, location, why + ": " + location);
    }
}
