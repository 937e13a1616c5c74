package com.corvallen.storage.provider;

/**
 * Why an operation failed. The native host receives the number of a constant; numbers never change.
 *
 * <p>Immutable; safe on any thread.
 */
public enum ErrorCode {
    /** The back end cannot say more; the message and the cause of the exception hold what is known. */
    UNKNOWN(0),

    /** Nothing exists at the location, or the folder that should hold it does not exist. */
    NOT_FOUND(1),

    /** Something exists at the location already, and replacing it was not asked for. */
    ALREADY_EXISTS(2),

    /** The back end refuses: missing permission, a read-only storage, or a location outside what it serves. */
    ACCESS_DENIED(3),

    /** A file is needed, but the location is a folder. */
    NOT_A_FILE(4),

    /** A folder is needed, but the location is a file. */
    NOT_A_FOLDER(5),

    /** The folder has children, so it is not removed. */
    FOLDER_NOT_EMPTY(6),

    /** The back end does not offer the operation, or not for this location. */
    NOT_SUPPORTED(7),

    /** The text is not a location of this back end, or the operation makes no sense for these two locations. */
    INVALID_LOCATION(8),

    /** No space is left, or a quota is used up. */
    STORAGE_FULL(9),

    /** Something else uses the file or folder in a way that prevents the operation. */
    IN_USE(10),

    /** The storage cannot be reached: not mounted, offline, broken, closed or disposed of. */
    UNAVAILABLE(11);

    private final int number;

    ErrorCode(int number) {
        this.number = number;
    }

    /**
     * Returns the number that the native host receives.
     *
     * @return 0 to 11
     */
    public int getNumber() {
        return number;
    }
}
