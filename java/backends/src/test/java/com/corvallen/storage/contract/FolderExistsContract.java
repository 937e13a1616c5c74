package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code folderExists}. */
public abstract class FolderExistsContract extends OperationContract {
    protected FolderExistsContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void folderIsAFolder() throws Exception {
        assertTrue(provider.folderExists(folder("a")));
    }

    @Test
    void slashAtTheEndMakesNoDifference() throws Exception {
        assertTrue(provider.folderExists(new StorageURI(folder("a").getText() + "/")));
    }

    @Test
    void missingIsNoFolder() throws Exception {
        assertFalse(provider.folderExists(at("a")));
    }

    @Test
    void fileIsNoFolder() throws Exception {
        assertFalse(provider.folderExists(file("x", "a")));
    }

    @Test
    void nothingIsBelowAMissingFolder() throws Exception {
        assertFalse(provider.folderExists(at("missing", "a")));
    }

    @Test
    void nothingIsBelowAFile() throws Exception {
        file("x", "a");
        assertFalse(provider.folderExists(at("a", "b")));
    }

    @Test
    void rootIsAFolder() throws Exception {
        assertTrue(provider.folderExists(at()));
    }
}
