package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import org.junit.jupiter.api.Test;

/** The cases of {@code fileExists}. */
public abstract class FileExistsContract extends OperationContract {
    protected FileExistsContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void fileIsAFile() throws Exception {
        assertTrue(provider.fileExists(file("x", "a")));
    }

    @Test
    void missingIsNoFile() throws Exception {
        assertFalse(provider.fileExists(at("a")));
    }

    @Test
    void folderIsNoFile() throws Exception {
        assertFalse(provider.fileExists(folder("a")));
    }

    @Test
    void nothingIsBelowAMissingFolder() throws Exception {
        assertFalse(provider.fileExists(at("missing", "a")));
    }

    @Test
    void nothingIsBelowAFile() throws Exception {
        file("x", "a");
        assertFalse(provider.fileExists(at("a", "b")));
        assertFalse(provider.fileExists(at("a", "b", "c")));
    }

    @Test
    void rootIsNoFile() throws Exception {
        assertFalse(provider.fileExists(at()));
    }
}
