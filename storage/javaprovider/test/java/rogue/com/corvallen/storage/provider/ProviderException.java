package com.corvallen.storage.provider;

/**
 * The exception of a contract that keeps none of its promises: any number, any text for a location, and getters that
 * throw. A test program has it on its class path before the real one.
 */
public class ProviderException extends Exception {
    private static final long serialVersionUID = 1L;
    private final int number;
    private final String location;
    private final RuntimeException fromGetters;

    /** As the real one. */
    public ProviderException(ErrorCode errorCode, StorageURI location) {
        this(errorCode, location, null);
    }

    /** As the real one. */
    public ProviderException(ErrorCode errorCode, StorageURI location, String message) {
        this(errorCode, location, message, null);
    }

    /** As the real one. */
    public ProviderException(ErrorCode errorCode, StorageURI location, String message, Throwable cause) {
        super(message, cause);
        this.number = errorCode.getNumber();
        this.location = location == null ? null : location.getText();
        this.fromGetters = null;
    }

    private ProviderException(int number, String location, RuntimeException fromGetters) {
        super("number " + number);
        this.number = number;
        this.location = location;
        this.fromGetters = fromGetters;
    }

    /** An exception with any number, as text. */
    public static Object withNumber(String number, String location) {
        return new ProviderException(Integer.parseInt(number), location, null);
    }

    /** An exception whose getters throw. */
    public static Object withThrowingGetters() {
        return new ProviderException(1, null, new IllegalStateException("thrown by a getter"));
    }

    /** The number. */
    public int getErrorCodeNumber() {
        return orThrow(number);
    }

    /** The location. */
    public String getLocationString() {
        return orThrow(location);
    }

    private <T> T orThrow(T value) {
        if (fromGetters != null) {
            throw fromGetters;
        }
        return value;
    }
}
