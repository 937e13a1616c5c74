package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import com.corvallen.storage.provider.ExtendedFeature;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

/** A feature is available if all configured mounts have it. */
class FeaturesTest {
    private static final String PROPERTY = "storage.mount.features-test";

    private final NioProvider provider = new NioProvider();

    @AfterEach
    void cleanUp() {
        System.clearProperty(PROPERTY);
        provider.dispose();
    }

    @ParameterizedTest
    @CsvSource({
        "file:///srv, true, true",
        "FILE:///srv, true, true",
        "jimfs://any/folder, true, true",
        "jar:file:///a.zip, false, true",
        "sftp://host/folder, false, false",
        "not a uri, true, true",
        "'', true, true"
    })
    void openFilesMoveIfTheyDoSoEverywhere(String mount, boolean whenOpen, boolean whenOpenForReading) {
        System.setProperty(PROPERTY, mount);
        assertEquals(whenOpen, provider.hasFeature(ExtendedFeature.AllowsMovesAndDeletesWhenOpen));
        assertEquals(whenOpenForReading, provider.hasFeature(ExtendedFeature.AllowsMovesAndDeletesWhenOpenReadOnly));
    }

    @ParameterizedTest
    @CsvSource({"file:///srv", "jar:file:///a.zip", "sftp://host/folder"})
    void recursionIsEverywhere(String mount) {
        System.setProperty(PROPERTY, mount);
        assertEquals(true, provider.hasFeature(ExtendedFeature.RecursiveFolderRemoval));
        assertEquals(true, provider.hasFeature(ExtendedFeature.RecursiveChangeEvents));
    }

    @Test
    void nullIsNoFeature() {
        assertFalse(provider.hasFeature(null));
    }
}
