package com.corvallen.storage.provider;

/** The one rule of what may be the name of a file or folder. */
final class SegmentNames {
    private SegmentNames() {}

    /**
     * Checks that a text is one name and nothing else.
     *
     * @param location what to report
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
            throw invalid(location, "a name must not hold a slash, encoded or not");
        }
        if (name.indexOf('\0') >= 0) {
            throw invalid(location, "a name must not hold NUL");
        }
        return name;
    }

    static ProviderException invalid(StorageURI location, String why) {
        return new ProviderException(ErrorCode.INVALID_LOCATION, location, why + ": " + location);
    }
}
