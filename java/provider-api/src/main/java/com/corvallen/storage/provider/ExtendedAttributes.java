package com.corvallen.storage.provider;

import java.util.Arrays;
import java.util.Collection;

/** The extended attributes of one file or folder. Immutable; safe on any thread; no getter throws. */
public final class ExtendedAttributes {
    private static final ExtendedAttributes NONE = new ExtendedAttributes();

    private final ExtendedAttribute[] attributes;

    /**
     * Creates a set of attributes. If a name occurs twice, the host keeps the first.
     *
     * @param attributes the attributes in the order in which the host reads them; copied
     * @throws NullPointerException if the array or one of its elements is null, which would crash the native side
     */
    public ExtendedAttributes(ExtendedAttribute... attributes) {
        this.attributes = attributes.clone();
        for (ExtendedAttribute attribute : this.attributes) {
            if (attribute == null) {
                throw new NullPointerException("an extended attribute is null");
            }
        }
    }

    /**
     * Creates a set of attributes from a collection, in its order.
     *
     * @param attributes the attributes; copied
     * @throws NullPointerException if the collection or one of its elements is null
     */
    public ExtendedAttributes(Collection<ExtendedAttribute> attributes) {
        this(attributes.toArray(new ExtendedAttribute[0]));
    }

    /**
     * Returns the empty set, for a file or folder without extended attributes.
     *
     * @return a set without attributes
     */
    public static ExtendedAttributes none() {
        return NONE;
    }

    /**
     * Returns all attributes. Called by the native side.
     *
     * @return a new array, empty if there are none; no element is null
     */
    public ExtendedAttribute[] getAllAttributes() {
        return attributes.clone();
    }

    @Override
    public boolean equals(Object other) {
        return other instanceof ExtendedAttributes
                && Arrays.equals(attributes, ((ExtendedAttributes) other).attributes);
    }

    @Override
    public int hashCode() {
        return Arrays.hashCode(attributes);
    }

    @Override
    public String toString() {
        return "ExtendedAttributes" + Arrays.toString(attributes);
    }
}
