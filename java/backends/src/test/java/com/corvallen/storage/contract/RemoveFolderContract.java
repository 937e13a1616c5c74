package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assumptions.assumeTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code removeFolder}. */
public abstract class RemoveFolderContract extends OperationContract {
    protected RemoveFolderContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void emptyFolderIsRemoved() throws Exception {
        StorageURI a = folder("a");
        provider.removeFolder(a);
        assertMissing(a);
    }

    @Test
    void nonEmptyFolderIsKept() throws Exception {
        StorageURI a = folder("a");
        StorageURI child = file("x", "a", "child");
        assertFails(ErrorCode.FOLDER_NOT_EMPTY, a, () -> provider.removeFolder(a));
        assertFile("x", child);
    }

    @Test
    void folderThatHoldsAnEmptyFolderIsKept() throws Exception {
        StorageURI a = folder("a");
        StorageURI child = folder("a", "child");
        assertFails(ErrorCode.FOLDER_NOT_EMPTY, a, () -> provider.removeFolder(a));
        assertFolder(child);
    }

    @Test
    void missingIsNotFound() throws Exception {
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.removeFolder(a));
    }

    @Test
    void fileIsKept() throws Exception {
        StorageURI a = file("x", "a");
        assertFails(ErrorCode.NOT_A_FOLDER, a, () -> provider.removeFolder(a));
        assertFile("x", a);
    }

    @Test
    void rootIsKept() throws Exception {
        assumeTrue(storage.rootIsTop(), "the storage is part of a larger one");
        assertFails(ErrorCode.ACCESS_DENIED, at(), () -> provider.removeFolder(at()));
        assertFolder(at());
    }
}
