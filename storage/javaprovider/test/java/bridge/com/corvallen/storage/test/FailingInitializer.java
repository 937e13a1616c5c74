package com.corvallen.storage.test;

/** A class whose initialisation fails each time the virtual machine first tries it. */
public final class FailingInitializer {
    /** Not a constant to the compiler, so that it is computed when the class is initialised. */
    static final int NUMBER = Integer.parseInt("not a number");

    private FailingInitializer() {}
}
