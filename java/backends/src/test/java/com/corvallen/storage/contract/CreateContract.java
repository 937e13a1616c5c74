package com.corvallen.storage.contract;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** The cases that {@code createFile} and {@code createFolder} share. */
public abstract class CreateContract extends OperationContract {
    protected CreateContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    /** Calls the operation. */
    protected abstract void create(StorageURI location) throws ProviderException;

    /** Asserts that the operation has created what it should. */
    protected abstract void assertCreated(StorageURI location) throws Exception;

    @Test
    void entryInAFolderIsCreated() throws Exception {
        folder("f");
        create(at("f", "a"));
        assertCreated(at("f", "a"));
    }

    @ParameterizedTest
    @ValueSource(
            strings = {"a b", "ä\ud83d\ude00", "100%", "a?b#c", "a+b", "...", ".hidden", "%2e%2e", "a:b", "'\"&*"})
    void nameMayBeAnyText(String name) throws Exception {
        create(at(name));
        assertCreated(at(name));
    }

    @Test
    void existingFileIsKept() throws Exception {
        StorageURI a = file("old", "a");
        assertFails(ErrorCode.ALREADY_EXISTS, a, () -> create(a));
        assertFile("old", a);
    }

    @Test
    void existingFolderIsKept() throws Exception {
        StorageURI a = folder("a");
        file("x", "a", "child");
        assertFails(ErrorCode.ALREADY_EXISTS, a, () -> create(a));
        assertFile("x", at("a", "child"));
    }

    @Test
    void rootExistsAlready() throws Exception {
        assertFails(ErrorCode.ALREADY_EXISTS, at(), () -> create(at()));
    }

    @Test
    void missingParentIsNotFound() throws Exception {
        StorageURI a = at("missing", "a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> create(a));
        assertMissing(at("missing"));
    }

    @Test
    void missingParentBelowAFileIsNotFound() throws Exception {
        StorageURI file = file("x", "file");
        StorageURI a = at("file", "missing", "a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> create(a));
        assertFile("x", file);
    }

    @Test
    void fileForAParentIsNotAFolder() throws Exception {
        StorageURI parent = file("x", "parent");
        StorageURI a = at("parent", "a");
        assertFails(ErrorCode.NOT_A_FOLDER, a, () -> create(a));
        assertFile("x", parent);
        assertMissing(a);
    }

    @Test
    void oneOfManyCreatesIt() throws Exception {
        for (int round = 0; round < 20; round++) {
            StorageURI a = at("a" + round);
            assertOneWinner(ErrorCode.ALREADY_EXISTS, atTheSameTime(8, number -> create(a)));
        }
    }
}
