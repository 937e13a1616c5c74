package com.corvallen.jstore.test;

/** A class without the methods of the contract. */
public final class NoProvider {
    /** Makes one. */
    public NoProvider() {}
}
