package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assumptions.assumeTrue;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** The cases of {@code moveFolder}. */
public abstract class MoveFolderContract extends OperationContract {
    protected MoveFolderContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    /** A folder with a file, an empty folder, and a folder with a file in it. */
    private StorageURI tree(String name) throws Exception {
        StorageURI folder = folder(name);
        file(name + " 1", name, "file");
        folder(name, "empty");
        folder(name, "sub");
        file(name + " 2", name, "sub", "file");
        return folder;
    }

    private void assertTree(String content, StorageURI folder) throws Exception {
        assertEquals(3, storage.countEntries(folder));
        assertFile(content + " 1", folder.resolve("file"));
        assertFolder(folder.resolve("empty"));
        assertEquals(1, storage.countEntries(folder.resolve("sub")));
        assertFile(content + " 2", folder.resolve("sub").resolve("file"));
    }

    private void assertGone(StorageURI folder) throws Exception {
        assertMissing(folder);
        assertMissing(folder.resolve("file"));
        assertMissing(folder.resolve("sub").resolve("file"));
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void folderArrivesWithEverythingInIt(boolean replace) throws Exception {
        StorageURI a = tree("a");
        provider.moveFolder(a, at("b"), replace);
        assertGone(a);
        assertTree("a", at("b"));
        assertEquals(1, storage.countEntries(at()));
    }

    @Test
    void emptyFolderMoves() throws Exception {
        StorageURI a = folder("a");
        provider.moveFolder(a, at("b"), /* replace= */ false);
        assertMissing(a);
        assertFolder(at("b"));
    }

    @Test
    void folderMovesToAnotherFolder() throws Exception {
        StorageURI a = tree("a");
        folder("f");
        provider.moveFolder(a, at("f", "b"), /* replace= */ false);
        assertGone(a);
        assertTree("a", at("f", "b"));
    }

    @Test
    void movedFolderDoesNotComeBackWithItsOldName() throws Exception {
        StorageURI a = tree("a");
        provider.moveFolder(a, at("b"), /* replace= */ false);
        provider.createFolder(a);
        assertEquals(0, storage.countEntries(a));
        assertMissing(a.resolve("file"));
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void missingSourceIsNotFound(boolean replace) throws Exception {
        StorageURI a = at("a");
        StorageURI b = tree("b");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.moveFolder(a, b, replace));
        assertTree("b", b);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void fileForASourceIsNotAFolder(boolean replace) throws Exception {
        StorageURI a = file("x", "a");
        assertFails(ErrorCode.NOT_A_FOLDER, a, () -> provider.moveFolder(a, at("b"), replace));
        assertFile("x", a);
        assertMissing(at("b"));
    }

    @Test
    void existingFolderIsKept() throws Exception {
        StorageURI a = tree("a");
        StorageURI b = tree("b");
        assertFails(ErrorCode.ALREADY_EXISTS, b, () -> provider.moveFolder(a, b, /* replace= */ false));
        assertTree("a", a);
        assertTree("b", b);
    }

    @Test
    void emptyFolderIsNotReplacedUnasked() throws Exception {
        StorageURI a = tree("a");
        StorageURI b = folder("b");
        assertFails(ErrorCode.ALREADY_EXISTS, b, () -> provider.moveFolder(a, b, /* replace= */ false));
        assertTree("a", a);
        assertEquals(0, storage.countEntries(b));
    }

    @Test
    void existingFolderIsReplacedWithEverythingInIt() throws Exception {
        StorageURI a = tree("a");
        StorageURI b = tree("b");
        StorageURI extra = file("x", "b", "extra");
        provider.moveFolder(a, b, /* replace= */ true);
        assertGone(a);
        assertTree("a", b);
        assertMissing(extra);
        assertEquals(1, storage.countEntries(at()));
    }

    @Test
    void existingFileIsKept() throws Exception {
        StorageURI a = tree("a");
        StorageURI b = file("x", "b");
        assertFails(ErrorCode.ALREADY_EXISTS, b, () -> provider.moveFolder(a, b, /* replace= */ false));
        assertTree("a", a);
        assertFile("x", b);
    }

    @Test
    void fileIsNeverReplacedByAFolder() throws Exception {
        StorageURI a = tree("a");
        StorageURI b = file("x", "b");
        assertFails(ErrorCode.NOT_A_FOLDER, b, () -> provider.moveFolder(a, b, /* replace= */ true));
        assertTree("a", a);
        assertFile("x", b);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void moveToItselfDoesNothing(boolean replace) throws Exception {
        StorageURI a = tree("a");
        provider.moveFolder(a, a, replace);
        provider.moveFolder(a, new StorageURI(a.getText() + "/"), replace);
        assertTree("a", a);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void folderDoesNotMoveIntoItself(boolean replace) throws Exception {
        StorageURI a = tree("a");
        for (StorageURI b : new StorageURI[] {at("a", "b"), at("a", "sub"), at("a", "sub", "b")}) {
            assertFails(ErrorCode.INVALID_LOCATION, b, () -> provider.moveFolder(a, b, replace));
        }
        assertTree("a", a);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void folderDoesNotReplaceOneThatHoldsIt(boolean replace) throws Exception {
        StorageURI a = tree("a");
        StorageURI sub = at("a", "sub");
        assertFails(ErrorCode.INVALID_LOCATION, a, () -> provider.moveFolder(sub, a, replace));
        assertTree("a", a);
    }

    @Test
    void nameThatBeginsTheSameIsNotInside() throws Exception {
        StorageURI a = tree("a");
        provider.moveFolder(a, at("ab"), /* replace= */ false);
        assertTree("a", at("ab"));
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void missingParentOfTheTargetIsNotFound(boolean replace) throws Exception {
        StorageURI a = tree("a");
        StorageURI b = at("missing", "b");
        assertFails(ErrorCode.NOT_FOUND, b, () -> provider.moveFolder(a, b, replace));
        assertTree("a", a);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void missingParentOfTheTargetBelowAFileIsNotFound(boolean replace) throws Exception {
        StorageURI a = tree("a");
        StorageURI file = file("y", "file");
        StorageURI b = at("file", "missing", "b");
        assertFails(ErrorCode.NOT_FOUND, b, () -> provider.moveFolder(a, b, replace));
        assertTree("a", a);
        assertFile("y", file);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void fileForAParentOfTheTargetIsNotAFolder(boolean replace) throws Exception {
        StorageURI a = tree("a");
        StorageURI parent = file("y", "parent");
        StorageURI b = at("parent", "b");
        assertFails(ErrorCode.NOT_A_FOLDER, b, () -> provider.moveFolder(a, b, replace));
        assertTree("a", a);
        assertFile("y", parent);
    }

    @Test
    void rootDoesNotMove() throws Exception {
        assumeTrue(storage.rootIsTop(), "the storage is part of a larger one");
        StorageURI a = file("x", "a");
        assertFails(ErrorCode.ACCESS_DENIED, at(), () -> provider.moveFolder(at(), at("b"), /* replace= */ false));
        assertFile("x", a);
    }
}
