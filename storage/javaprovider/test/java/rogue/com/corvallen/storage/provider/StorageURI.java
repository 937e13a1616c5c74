package com.corvallen.storage.provider;

/**
 * The location of a contract that keeps none of its promises: its constructor throws for a text that ends in "refused",
 * and a null text stays null. A test program has it on its class path before the real one.
 */
public final class StorageURI {
    private final String text;

    /** Makes a location. */
    public StorageURI(String text) {
        if (text != null && text.endsWith("refused")) {
            throw new IllegalArgumentException("refused by the constructor");
        }
        this.text = text;
    }

    /** The text, null included. */
    public String getText() {
        return text;
    }
}
