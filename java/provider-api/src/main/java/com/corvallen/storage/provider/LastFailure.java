package com.corvallen.storage.provider;

/**
 * The failure that the native side last reported on a thread, with the message that a native exception cannot hold.
 *
 * <p>A host receives only a code and a location. To show a failure to users, it calls {@link #take()} on the same
 * thread right after the operation has failed, and compares code and location: if both are equal, {@link #getReason()}
 * belongs to the failure. Only text is kept, shortened to {@value #LONGEST} characters, so no stack trace and no class
 * of a back end stays referenced.
 *
 * <p>Immutable.
 */
public final class LastFailure {
    /** The number of characters of a message that are kept. */
    static final int LONGEST = 2000;

    /** Code, location and message: objects of platform classes, which keep no other class loader alive. */
    private static final ThreadLocal<String[]> LAST = new ThreadLocal<>();

    private final ErrorCode errorCode;
    private final String locationString;
    private final String reason;

    private LastFailure(ErrorCode errorCode, String locationString, String message) {
        this.errorCode = errorCode;
        this.locationString = locationString;
        this.reason = ReasonText.of(errorCode, locationString, message);
    }

    /**
     * Returns the failure that the native side last reported on the calling thread, and forgets it.
     *
     * @return the failure, or {@code null} if none was reported since the last call
     */
    public static LastFailure take() {
        String[] last = LAST.get();
        if (last == null) {
            return null;
        }
        LAST.remove();
        return new LastFailure(ErrorCode.valueOf(last[0]), last[1], last[2]);
    }

    /** Records a failure that the native side is about to report. */
    static void note(ErrorCode errorCode, String locationString, String message) {
        LAST.set(new String[] {errorCode.name(), locationString, shortened(message)});
    }

    private static String shortened(String message) {
        return message == null || message.length() <= LONGEST ? message : message.substring(0, LONGEST);
    }

    /**
     * Returns why it failed.
     *
     * @return the code, never {@code null}
     */
    public ErrorCode getErrorCode() {
        return errorCode;
    }

    /**
     * Returns the number of {@link #getErrorCode()}.
     *
     * @return 0 to 11
     */
    public int getErrorCodeNumber() {
        return errorCode.getNumber();
    }

    /**
     * Returns the location concerned, as the native side reported it.
     *
     * @return the text, or {@code null} if no location is concerned
     */
    public String getLocationString() {
        return locationString;
    }

    /**
     * Returns the exception's message without the code and the location, as one line. It may contain any characters: a
     * host that shows it on a terminal must remove control characters.
     *
     * @return the text, or {@code null} if the message contains nothing else
     */
    public String getReason() {
        return reason;
    }
}
