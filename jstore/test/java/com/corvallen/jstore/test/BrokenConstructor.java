package com.corvallen.jstore.test;

/** Cannot be made. */
public final class BrokenConstructor extends EmptyProvider {
    /** Fails. */
    public BrokenConstructor() {
        throw new IllegalStateException("no configuration\nanywhere");
    }
}
