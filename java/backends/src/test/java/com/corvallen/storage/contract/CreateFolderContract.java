package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** The cases of {@code createFolder}. */
public abstract class CreateFolderContract extends OperationContract {
    protected CreateFolderContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void newFolderIsEmpty() throws Exception {
        provider.createFolder(at("a"));
        assertFolder(at("a"));
        assertEquals(0, storage.countEntries(at("a")));
    }

    @Test
    void folderInAFolderIsCreated() throws Exception {
        folder("f");
        provider.createFolder(at("f", "a"));
        assertFolder(at("f", "a"));
    }

    @ParameterizedTest
    @ValueSource(
            strings = {"a b", "ä\ud83d\ude00", "100%", "a?b#c", "a+b", "...", ".hidden", "%2e%2e", "a:b", "'\"&*"})
    void nameMayBeAnyText(String name) throws Exception {
        provider.createFolder(at(name));
        assertFolder(at(name));
    }

    @Test
    void existingFileIsKept() throws Exception {
        StorageURI a = file("old", "a");
        assertFails(ErrorCode.ALREADY_EXISTS, a, () -> provider.createFolder(a));
        assertFile("old", a);
    }

    @Test
    void existingFolderIsKept() throws Exception {
        StorageURI a = folder("a");
        file("x", "a", "child");
        assertFails(ErrorCode.ALREADY_EXISTS, a, () -> provider.createFolder(a));
        assertFile("x", at("a", "child"));
    }

    @Test
    void rootExistsAlready() throws Exception {
        assertFails(ErrorCode.ALREADY_EXISTS, at(), () -> provider.createFolder(at()));
    }

    @Test
    void missingParentIsNotFound() throws Exception {
        StorageURI a = at("missing", "a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.createFolder(a));
        assertMissing(at("missing"));
    }

    @Test
    void missingParentBelowAFileIsNotFound() throws Exception {
        StorageURI file = file("x", "file");
        StorageURI a = at("file", "missing", "a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.createFolder(a));
        assertFile("x", file);
    }

    @Test
    void fileForAParentIsNotAFolder() throws Exception {
        StorageURI parent = file("x", "parent");
        StorageURI a = at("parent", "a");
        assertFails(ErrorCode.NOT_A_FOLDER, a, () -> provider.createFolder(a));
        assertFile("x", parent);
        assertMissing(a);
    }

    @Test
    void oneOfManyCreatesIt() throws Exception {
        for (int round = 0; round < 20; round++) {
            StorageURI a = at("a" + round);
            assertOneWinner(ErrorCode.ALREADY_EXISTS, atTheSameTime(8, number -> provider.createFolder(a)));
        }
    }
}
