package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;

import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** Moves with links that stay inside: a link is moved itself, and what a link at the target leads to is replaced. */
abstract class LinkMovesContract extends NioTestCase {
    LinkMovesContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void linkToAFileIsMovedItself() throws Exception {
        StorageURI file = file("x", "file");
        StorageURI link = link("file", "link");
        provider.moveFile(link, at("moved"), /* replace= */ false);
        assertNothing(link);
        assertLink(at("moved"));
        assertFile("x", at("moved"));
        assertFile("x", file);
    }

    @Test
    void linkToAFolderIsMovedItself() throws Exception {
        folder("folder");
        StorageURI file = file("x", "folder", "file");
        StorageURI link = link("folder", "link");
        provider.moveFolder(link, at("moved"), /* replace= */ false);
        assertNothing(link);
        assertLink(at("moved"));
        assertFile("x", file);
    }

    @Test
    void whatALinkLeadsToIsReplacedAndTheLinkStays() throws Exception {
        StorageURI file = file("old", "file");
        StorageURI link = link("file", "link");
        StorageURI second = link("link", "second");
        assertFails(
                ErrorCode.ALREADY_EXISTS, link, () -> provider.moveFile(file("new", "a"), link, /* replace= */ false));
        provider.moveFile(at("a"), second, /* replace= */ true);
        assertMissing(at("a"));
        assertLink(link);
        assertLink(second);
        assertFalse(Files.isSymbolicLink(nio().path(file)));
        assertFile("new", file);
    }

    @Test
    void fileThatReplacesThroughALinkTakesTheMissingNameThatItLeadsTo() throws Exception {
        folder("folder");
        StorageURI link = link("folder/new", "link");
        provider.moveFile(file("x", "a"), link, /* replace= */ true);
        assertLink(link);
        assertFile("x", at("folder", "new"));
        StorageURI lost = link("missing/new", "lost");
        assertFails(ErrorCode.NOT_FOUND, lost, () -> provider.moveFile(file("y", "b"), lost, /* replace= */ true));
        assertLink(lost);
        assertFile("y", at("b"));
    }

    @Test
    void linkInACircleIsNotReplaced() throws Exception {
        StorageURI link = link("other", "link");
        link("link", "other");
        assertFails(ErrorCode.INVALID_LOCATION, link, () -> provider.moveFile(file("x", "a"), link, true));
        assertLink(link);
        assertFile("x", at("a"));
    }

    @Test
    void fileThatIsMovedToALinkToItselfStays() throws Exception {
        StorageURI file = file("x", "file");
        StorageURI link = link("file", "link");
        provider.moveFile(file, link, /* replace= */ true);
        assertLink(link);
        assertFile("x", file);
    }

    @Test
    void linkReplacesALinkItself() throws Exception {
        StorageURI file = file("x", "file");
        StorageURI link = link("file", "link");
        StorageURI other = link("nowhere", "other");
        provider.moveFile(link, other, /* replace= */ true);
        assertNothing(link);
        assertLink(other);
        assertFile("x", other);
        assertFile("x", file);
    }

    @Test
    void linkDoesNotReplaceTheFileThatItLeadsTo() throws Exception {
        StorageURI file = file("x", "file");
        StorageURI link = link("file", "link");
        assertFails(ErrorCode.INVALID_LOCATION, file, () -> provider.moveFile(link, file, /* replace= */ true));
        assertLink(link);
        assertFile("x", file);
    }

    @Test
    void linkToAFolderIsReplacedItself() throws Exception {
        folder("folder");
        StorageURI child = file("old", "folder", "child");
        StorageURI link = link("folder", "link");
        StorageURI a = folder("a");
        assertFails(ErrorCode.NOT_A_FILE, link, () -> provider.moveFile(file("x", "f"), link, /* replace= */ true));
        provider.moveFolder(a, link, /* replace= */ true);
        assertFalse(Files.isSymbolicLink(nio().path(link)));
        assertEquals(0, storage.countEntries(link));
        assertFile("old", child);
    }

    @Test
    void linkThatLeadsNowhereIsNotReplacedUnasked() throws Exception {
        StorageURI link = link("nowhere", "link");
        StorageURI a = file("x", "a");
        assertFails(ErrorCode.ALREADY_EXISTS, link, () -> provider.moveFile(a, link, /* replace= */ false));
        assertLink(link);
        assertFile("x", a);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void fileMovesThroughLinks(boolean replace) throws Exception {
        folder("folder");
        folder("other");
        file("x", "folder", "file");
        StorageURI from = link("folder", "from");
        StorageURI to = link("other", "to");
        provider.moveFile(at("from", "file"), at("to", "moved"), replace);
        assertFile("x", at("other", "moved"));
        assertNothing(at("folder", "file"));
        assertLink(from);
        assertLink(to);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void moveToItselfByAnotherWayDoesNothing(boolean replace) throws Exception {
        folder("folder");
        StorageURI file = file("x", "folder", "file");
        link("folder", "link");
        provider.moveFile(file, at("link", "file"), replace);
        assertFile("x", file);
        provider.moveFolder(folder("folder", "sub"), at("link", "sub"), replace);
        assertFolder(at("folder", "sub"));
    }

    @Test
    void folderDoesNotMoveIntoItselfByAnotherWay() throws Exception {
        StorageURI folder = folder("folder");
        link("folder", "link");
        StorageURI target = at("link", "inside");
        assertFails(ErrorCode.INVALID_LOCATION, target, () -> provider.moveFolder(folder, target, true));
        assertFolder(folder);
    }

    @Test
    void linksInAMovedFolderStayLinks() throws Exception {
        file("x", "file");
        StorageURI a = folder("a");
        link("../file", "a", "link");
        provider.moveFolder(a, at("b"), /* replace= */ false);
        assertLink(at("b", "link"));
        assertFile("x", at("b", "link"));
    }
}
