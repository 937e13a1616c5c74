package com.corvallen.storage.provider;

/**
 * The failure that the native side reported last on a thread, with the words that a native exception has no room for.
 *
 * <p>A host receives a code and a location. One that shows failures to people calls {@link #take()} right after an
 * operation has failed, on the same thread, and compares both: where they are the same, {@link #getReason()} belongs to
 * the failure. {@link ProviderException} remembers only text, cut to {@value #LONGEST} characters, so neither a stack
 * nor a class of a back end is kept.
 *
 * <p>Immutable.
 */
public final class LastFailure {
    /** How many characters of a message are remembered. */
    static final int LONGEST = 2000;

    /** Number, location and message: text of the platform's own class, which keeps no class loader of ours alive. */
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
     * Returns what the native side reported last on the calling thread, and forgets it.
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

    /** Notes a failure that the native side is about to report. */
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
     * Returns what the exception's message says beside the code and the location, as one line. It may hold any
     * characters, so a host that shows it on a terminal takes out what controls one.
     *
     * @return the words, or {@code null} if the message says no more
     */
    public String getReason() {
        return reason;
    }
}
