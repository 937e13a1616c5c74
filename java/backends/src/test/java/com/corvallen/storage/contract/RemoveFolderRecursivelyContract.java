package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assumptions.assumeFalse;
import static org.junit.jupiter.api.Assumptions.assumeTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ExtendedFeature;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;

/** The cases of {@code removeFolderRecursively}, and that the back end declares the feature correctly. */
public abstract class RemoveFolderRecursivelyContract extends OperationContract {
    protected RemoveFolderRecursivelyContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    private boolean hasFeature() {
        return provider.hasFeature(ExtendedFeature.RecursiveFolderRemoval);
    }

    @Test
    void withoutTheFeatureItIsRefused() throws Exception {
        assumeFalse(hasFeature(), "the back end has the feature");
        StorageURI a = folder("a");
        assertFails(ErrorCode.NOT_SUPPORTED, a, () -> provider.removeFolderRecursively(a));
        assertFolder(a);
    }

    @Test
    void folderIsRemovedWithEverythingInIt() throws Exception {
        assumeTrue(hasFeature(), "the back end does not have the feature");
        StorageURI sibling = file("sibling", "b");
        StorageURI a = folder("a");
        file("1", "a", "file");
        folder("a", "sub");
        folder("a", "sub", "empty");
        file("2", "a", "sub", "file");
        provider.removeFolderRecursively(a);
        assertMissing(a);
        assertMissing(at("a", "file"));
        assertMissing(at("a", "sub", "file"));
        assertFile("sibling", sibling);
    }

    @Test
    void removedFolderCanBeMadeAnewAndIsEmpty() throws Exception {
        assumeTrue(hasFeature(), "the back end does not have the feature");
        StorageURI a = folder("a");
        StorageURI child = file("1", "a", "file");
        provider.removeFolderRecursively(a);
        provider.createFolder(a);
        assertMissing(child);
    }

    @Test
    void missingIsNotFound() throws Exception {
        assumeTrue(hasFeature(), "the back end does not have the feature");
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.removeFolderRecursively(a));
    }

    @Test
    void fileIsKept() throws Exception {
        assumeTrue(hasFeature(), "the back end does not have the feature");
        StorageURI a = file("x", "a");
        assertFails(ErrorCode.NOT_A_FOLDER, a, () -> provider.removeFolderRecursively(a));
        assertFile("x", a);
    }

    @Test
    void rootIsKeptWithEverythingInIt() throws Exception {
        assumeTrue(storage.rootIsTop(), "the storage is part of a larger one");
        assumeTrue(hasFeature(), "the back end does not have the feature");
        StorageURI a = file("x", "a");
        assertFails(ErrorCode.ACCESS_DENIED, at(), () -> provider.removeFolderRecursively(at()));
        assertFile("x", a);
    }
}
