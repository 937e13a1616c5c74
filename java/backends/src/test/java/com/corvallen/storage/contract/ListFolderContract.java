package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.StorageURI;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.List;
import java.util.TreeMap;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** The cases of {@code listFolder}. */
public abstract class ListFolderContract extends OperationContract {
    protected ListFolderContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    private void assertListed(StorageURI folder, FolderListEntry... expected) throws Exception {
        List<FolderListEntry> listed = Arrays.asList(provider.listFolder(folder));
        assertEquals(byName(Arrays.asList(expected)), byName(listed));
        assertEquals(expected.length, listed.size());
    }

    private static TreeMap<String, Boolean> byName(List<FolderListEntry> entries) {
        TreeMap<String, Boolean> result = new TreeMap<>();
        entries.forEach(entry -> result.put(entry.getName(), entry.isFolder()));
        return result;
    }

    private static FolderListEntry fileEntry(String name) {
        return new FolderListEntry(name, /* folder= */ false);
    }

    private static FolderListEntry folderEntry(String name) {
        return new FolderListEntry(name, /* folder= */ true);
    }

    @Test
    void emptyFolderHasNoEntries() throws Exception {
        assertListed(at());
        assertListed(folder("a"));
    }

    @Test
    void childrenAreListedAndNothingBelowThem() throws Exception {
        file("x", "file");
        folder("folder");
        file("y", "folder", "child");
        folder("folder", "inner");
        assertListed(at(), fileEntry("file"), folderEntry("folder"));
        assertListed(at("folder"), fileEntry("child"), folderEntry("inner"));
    }

    @ParameterizedTest
    @ValueSource(
            strings = {"a b", "ä\ud83d\ude00", "100%", "a?b#c", "a+b", "...", ".hidden", "%2e%2e", "a:b", "'\"&*"})
    void nameIsGivenAsItIs(String name) throws Exception {
        file("x", name);
        assertListed(at(), fileEntry(name));
        assertFile("x", at(provider.listFolder(at())[0].getName()));
    }

    @Test
    void manyChildrenAreAllListed() throws Exception {
        List<FolderListEntry> expected = new ArrayList<>();
        for (int i = 0; i < 500; i++) {
            provider.createFile(at("file" + i));
            expected.add(fileEntry("file" + i));
        }
        assertListed(at(), expected.toArray(new FolderListEntry[0]));
    }

    @Test
    void missingIsNotFound() throws Exception {
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.listFolder(a));
    }

    @Test
    void fileIsNotAFolder() throws Exception {
        StorageURI a = file("x", "a");
        assertFails(ErrorCode.NOT_A_FOLDER, a, () -> provider.listFolder(a));
    }

    @Test
    void listingWhileChildrenComeAndGoSucceeds() throws Exception {
        file("x", "stays");
        List<ErrorCode> codes = atTheSameTime(4, number -> {
            for (int round = 0; round < 50; round++) {
                if (number == 0) {
                    provider.createFile(at("comes"));
                    provider.removeFile(at("comes"));
                } else {
                    assertEquals(true, byName(Arrays.asList(provider.listFolder(at()))).containsKey("stays"));
                }
            }
        });
        assertEquals(Arrays.asList(null, null, null, null), codes);
    }
}
