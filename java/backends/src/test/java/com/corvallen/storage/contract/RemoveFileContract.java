package com.corvallen.storage.contract;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code removeFile}. */
public abstract class RemoveFileContract extends OperationContract {
    protected RemoveFileContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void fileIsRemoved() throws Exception {
        StorageURI sibling = file("sibling", "b");
        StorageURI a = file("x", "a");
        provider.removeFile(a);
        assertMissing(a);
        assertFile("sibling", sibling);
    }

    @Test
    void missingIsNotFound() throws Exception {
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.removeFile(a));
    }

    @Test
    void nothingIsFoundBelowAFile() throws Exception {
        StorageURI a = file("x", "a");
        StorageURI below = at("a", "b");
        assertFails(ErrorCode.NOT_FOUND, below, () -> provider.removeFile(below));
        StorageURI deeper = at("a", "b", "c");
        assertFails(ErrorCode.NOT_FOUND, deeper, () -> provider.removeFile(deeper));
        assertFile("x", a);
    }

    @Test
    void emptyFolderIsKept() throws Exception {
        StorageURI a = folder("a");
        assertFails(ErrorCode.NOT_A_FILE, a, () -> provider.removeFile(a));
        assertFolder(a);
    }

    @Test
    void rootIsKept() throws Exception {
        assertFails(ErrorCode.NOT_A_FILE, at(), () -> provider.removeFile(at()));
        assertFolder(at());
    }
}
