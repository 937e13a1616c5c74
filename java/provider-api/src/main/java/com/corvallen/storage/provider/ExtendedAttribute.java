package com.corvallen.storage.provider;

import java.util.Objects;

/** One named attribute of a file or folder; the value is text. Immutable; safe on any thread; no getter throws. */
public final class ExtendedAttribute {
    private final String name;
    private final String value;

    /**
     * Creates an attribute.
     *
     * @param name the name; the host reads {@code null} as an empty name
     * @param value the value; the host reads {@code null} as an empty value
     */
    public ExtendedAttribute(String name, String value) {
        this.name = name;
        this.value = value;
    }

    /**
     * Returns the name.
     *
     * @return the name as it was given, {@code null} included
     */
    public String getName() {
        return name;
    }

    /**
     * Returns the value.
     *
     * @return the value as it was given, {@code null} included
     */
    public String getValue() {
        return value;
    }

    @Override
    public boolean equals(Object other) {
        if (!(other instanceof ExtendedAttribute)) {
            return false;
        }
        ExtendedAttribute that = (ExtendedAttribute) other;
        return Objects.equals(name, that.name) && Objects.equals(value, that.value);
    }

    @Override
    public int hashCode() {
        return Objects.hashCode(name) * 31 + Objects.hashCode(value);
    }

    @Override
    public String toString() {
        return "ExtendedAttribute[" + name + "=" + value + "]";
    }
}
