package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import java.util.ArrayList;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** The cases of {@code moveFile}. */
public abstract class MoveFileContract extends OperationContract {
    protected MoveFileContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void fileArrivesAndLeaves(boolean replace) throws Exception {
        StorageURI a = file("x", "a");
        provider.moveFile(a, at("b"), replace);
        assertMissing(a);
        assertFile("x", at("b"));
        assertEquals(1, storage.countEntries(at()));
    }

    @Test
    void fileMovesToAnotherFolder() throws Exception {
        StorageURI a = file("x", "a");
        folder("f");
        provider.moveFile(a, at("f", "b"), /* replace= */ false);
        assertMissing(a);
        assertFile("x", at("f", "b"));
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void missingSourceIsNotFound(boolean replace) throws Exception {
        StorageURI a = at("a");
        StorageURI b = file("old", "b");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.moveFile(a, b, replace));
        assertFile("old", b);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void folderForASourceIsNotAFile(boolean replace) throws Exception {
        StorageURI a = folder("a");
        assertFails(ErrorCode.NOT_A_FILE, a, () -> provider.moveFile(a, at("b"), replace));
        assertFolder(a);
        assertMissing(at("b"));
    }

    @Test
    void existingFileIsKept() throws Exception {
        StorageURI a = file("new", "a");
        StorageURI b = file("old", "b");
        assertFails(ErrorCode.ALREADY_EXISTS, b, () -> provider.moveFile(a, b, /* replace= */ false));
        assertFile("new", a);
        assertFile("old", b);
    }

    @Test
    void existingFileIsReplaced() throws Exception {
        StorageURI a = file("new", "a");
        StorageURI b = file("old and longer", "b");
        provider.moveFile(a, b, /* replace= */ true);
        assertMissing(a);
        assertFile("new", b);
        assertEquals(1, storage.countEntries(at()));
    }

    @Test
    void existingFolderIsKept() throws Exception {
        StorageURI a = file("x", "a");
        StorageURI b = folder("b");
        assertFails(ErrorCode.ALREADY_EXISTS, b, () -> provider.moveFile(a, b, /* replace= */ false));
        assertFile("x", a);
        assertFolder(b);
    }

    @Test
    void folderIsNeverReplacedByAFile() throws Exception {
        StorageURI a = file("x", "a");
        StorageURI b = folder("b");
        assertFails(ErrorCode.NOT_A_FILE, b, () -> provider.moveFile(a, b, /* replace= */ true));
        assertFile("x", a);
        assertFolder(b);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void moveToItselfDoesNothing(boolean replace) throws Exception {
        StorageURI a = file("x", "a");
        provider.moveFile(a, a, replace);
        provider.moveFile(a, new StorageURI(a.getText() + "/"), replace);
        assertFile("x", a);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void missingParentOfTheTargetIsNotFound(boolean replace) throws Exception {
        StorageURI a = file("x", "a");
        StorageURI b = at("missing", "b");
        assertFails(ErrorCode.NOT_FOUND, b, () -> provider.moveFile(a, b, replace));
        assertFile("x", a);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void missingParentOfTheTargetBelowAFileIsNotFound(boolean replace) throws Exception {
        StorageURI a = file("x", "a");
        StorageURI file = file("y", "file");
        StorageURI b = at("file", "missing", "b");
        assertFails(ErrorCode.NOT_FOUND, b, () -> provider.moveFile(a, b, replace));
        assertFile("x", a);
        assertFile("y", file);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void fileForAParentOfTheTargetIsNotAFolder(boolean replace) throws Exception {
        StorageURI a = file("x", "a");
        StorageURI parent = file("y", "parent");
        StorageURI b = at("parent", "b");
        assertFails(ErrorCode.NOT_A_FOLDER, b, () -> provider.moveFile(a, b, replace));
        assertFile("x", a);
        assertFile("y", parent);
    }

    @Test
    void fileDoesNotMoveBelowItself() throws Exception {
        StorageURI a = file("x", "a");
        StorageURI b = at("a", "b");
        assertFails(ErrorCode.NOT_A_FOLDER, b, () -> provider.moveFile(a, b, /* replace= */ true));
        assertFile("x", a);
    }

    @Test
    void rootIsNotReplaced() throws Exception {
        StorageURI a = file("x", "a");
        assertFails(ErrorCode.NOT_A_FILE, at(), () -> provider.moveFile(a, at(), /* replace= */ true));
        assertFile("x", a);
    }

    @Test
    void oneOfManyTakesAFreeNameAndTheOthersStay() throws Exception {
        for (int round = 0; round < 10; round++) {
            StorageURI target = at("target" + round);
            List<StorageURI> sources = new ArrayList<>();
            for (int i = 0; i < 8; i++) {
                sources.add(file("content " + i, "source" + round + "-" + i));
            }
            List<ErrorCode> codes =
                    atTheSameTime(8, i -> provider.moveFile(sources.get(i), target, /* replace= */ false));
            assertOneWinner(ErrorCode.ALREADY_EXISTS, codes);
            for (int i = 0; i < 8; i++) {
                assertFile("content " + i, codes.get(i) == null ? target : sources.get(i));
            }
        }
    }
}
