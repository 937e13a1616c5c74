package com.corvallen.storage.provider;

/** A location of another version of the contract, which is not made from a text. */
public final class StorageURI {
    private final String text;

    private StorageURI(char[] text) {
        this.text = new String(text);
    }

    /** Makes a location. */
    public static StorageURI of(String text) {
        return new StorageURI(text.toCharArray());
    }

    /** The text. */
    public String getText() {
        return text;
    }
}
