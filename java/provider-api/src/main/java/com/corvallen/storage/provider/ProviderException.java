package com.corvallen.storage.provider;

/**
 * A failure that a back end reports on purpose: a code, and the location it concerns.
 *
 * <p>The host receives the code and the location. It can also get the message, through {@link LastFailure}, and show it
 * to users. Write one plain line that says what the code does not, such as {@code "the file name is too long"}. It may
 * begin with the code and the location, each followed by a colon; a host omits them. The cause stays in Java, for logs
 * and debuggers. Any other exception that leaves a back end counts as a programming error of the back end, so report
 * every expected failure with this class or a subclass.
 *
 * <p>The code comes from an enum, so its number is always 0 to 11. The getters that the host calls are final and never
 * throw, so a subclass cannot change that.
 */
public class ProviderException extends Exception {
    private static final long serialVersionUID = 1L;

    /** The code; never null. */
    private final ErrorCode errorCode;

    /** The text of the location; may be null. */
    private final String locationText;

    /**
     * Creates an exception whose message consists of the code and the location.
     *
     * @param errorCode why it failed; {@code null} counts as {@link ErrorCode#UNKNOWN}, so that a mistake in reporting
     *     does not hide the failure itself
     * @param location the location concerned, or {@code null} for none
     */
    public ProviderException(ErrorCode errorCode, StorageURI location) {
        this(errorCode, location, null, null);
    }

    /**
     * Creates an exception with its own message.
     *
     * @param errorCode why it failed; {@code null} counts as {@link ErrorCode#UNKNOWN}
     * @param location the location concerned, or {@code null}
     * @param message why it failed, for users; {@code null} for the code and the location
     */
    public ProviderException(ErrorCode errorCode, StorageURI location, String message) {
        this(errorCode, location, message, null);
    }

    /**
     * Creates an exception with a message and a cause.
     *
     * @param errorCode why it failed; {@code null} counts as {@link ErrorCode#UNKNOWN}
     * @param location the location concerned, or {@code null}
     * @param message why it failed, for users; {@code null} for the code and the location
     * @param cause the exception that led to it, or {@code null}
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
     * Returns the number of {@link #getErrorCode()}, which the host receives. Called by the native side; it makes this
     * exception the {@link LastFailure} of the calling thread.
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
            // The number matters more than the text; the text of an earlier failure would not match its code.
        }
    }

    /** A subclass's getMessage() may throw anything, but what the native side calls must not throw. */
    private String messageOrNull() {
        try {
            return getMessage();
        } catch (RuntimeException | Error e) {
            return null;
        }
    }

    /**
     * Returns the text of the location concerned, as the host passed it. Called by the native side.
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
