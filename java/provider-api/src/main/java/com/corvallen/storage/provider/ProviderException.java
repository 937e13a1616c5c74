package com.corvallen.storage.provider;

/**
 * A failure that a back end reports on purpose: a code, and the location it concerns.
 *
 * <p>The host receives the code and the location. The message can be asked for with {@link LastFailure}, so it may be
 * shown to people: one plain line that says what the code does not, such as {@code "the file name is too long"}. The
 * code and the location may stand before it, with a colon after each; a host leaves them out. The cause stays in Java,
 * for logs and debuggers. Any other exception that leaves a back end is treated as a programming error of the back end,
 * so everything foreseen is reported with this class or a subclass of it.
 *
 * <p>The code comes from an enum, so its number is always 0 to 11; the two getters the host calls are final and never
 * throw, so a subclass cannot change that.
 */
public class ProviderException extends Exception {
    private static final long serialVersionUID = 1L;

    /** The code; never null. */
    private final ErrorCode errorCode;

    /** The text of the location; may be null. */
    private final String locationText;

    /**
     * Makes an exception whose message is made of the code and the location.
     *
     * @param errorCode why it failed; {@code null} counts as {@link ErrorCode#UNKNOWN}, so that a mistake in reporting
     *     does not hide the failure itself
     * @param location what it concerns, or {@code null} if no location is concerned
     */
    public ProviderException(ErrorCode errorCode, StorageURI location) {
        this(errorCode, location, null, null);
    }

    /**
     * Makes an exception with a message of its own.
     *
     * @param errorCode why it failed; {@code null} counts as {@link ErrorCode#UNKNOWN}
     * @param location what it concerns, or {@code null}
     * @param message why it failed, for people; {@code null} for one made of the code and the location
     */
    public ProviderException(ErrorCode errorCode, StorageURI location, String message) {
        this(errorCode, location, message, null);
    }

    /**
     * Makes an exception with a message and the exception that led to it.
     *
     * @param errorCode why it failed; {@code null} counts as {@link ErrorCode#UNKNOWN}
     * @param location what it concerns, or {@code null}
     * @param message why it failed, for people; {@code null} for one made of the code and the location
     * @param cause what led to it, or {@code null}
     */
    public ProviderException(ErrorCode errorCode, StorageURI location, String message, Throwable cause) {
        super(message != null ? message : describe(errorCode, location), cause);
        this.errorCode = orUnknown(errorCode);
        this.locationText = location == null ? null : location.getText();
    }

    /**
     * Returns why it failed.
     *
     * @return the code, never {@code null}
     */
    public final ErrorCode getErrorCode() {
        return errorCode;
    }

    /**
     * Returns the number of {@link #getErrorCode()}, which is what the host receives. Called by the native side; this
     * exception is the {@link LastFailure} of the calling thread from then on.
     *
     * @return 0 to 11
     */
    public final int getErrorCodeNumber() {
        noteAsLast();
        return errorCode.getNumber();
    }

    private void noteAsLast() {
        try {
            LastFailure.note(errorCode, locationText, messageOrNull());
        } catch (OutOfMemoryError e) {
            // The number counts more than the words; those of an earlier failure do not fit this one.
        }
    }

    /** A subclass's message may throw anything, and what the native side calls never throws. */
    private String messageOrNull() {
        try {
            return getMessage();
        } catch (RuntimeException | Error e) {
            return null;
        }
    }

    /**
     * Returns the text of the location concerned, as the host gave it. Called by the native side.
     *
     * @return the text, or {@code null} if no location is concerned
     */
    public final String getLocationString() {
        return locationText;
    }

    private static ErrorCode orUnknown(ErrorCode code) {
        return code == null ? ErrorCode.UNKNOWN : code;
    }

    private static String describe(ErrorCode code, StorageURI location) {
        String name = orUnknown(code).name();
        return location == null ? name : name + ": " + location;
    }
}
