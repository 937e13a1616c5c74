package com.corvallen.storage.backend.nio;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.contract.ChannelText;
import com.corvallen.storage.contract.StorageUnderTest;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.StorageURI;
import java.util.Arrays;
import java.util.Map;
import java.util.TreeMap;
import org.junit.jupiter.api.Test;

/** Links that stay inside: followed on the way, and removed themselves where an operation acts on them. */
abstract class LinksContract extends NioTestCase {
    LinksContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @Test
    void linkCountsAsWhatItLeadsTo() throws Exception {
        folder("folder");
        file("x", "file");
        assertTrue(provider.fileExists(link("file", "toFile")));
        assertTrue(provider.folderExists(link("folder", "toFolder")));
        assertTrue(provider.fileExists(link("toFile", "toLink")));
        assertMissing(link("nowhere", "dangling"));
    }

    @Test
    void absoluteLinkInsideIsFollowed() throws Exception {
        StorageURI file = file("x", "file");
        assertFile("x", link(nio().path(file).toString(), "absolute"));
        assertFolder(link(path().toString(), "root"));
    }

    @Test
    void linksOnTheWayAreFollowed() throws Exception {
        folder("folder");
        file("x", "folder", "file");
        link("folder", "link");
        folder("other");
        link("../folder/../link", "other", "back");
        assertFile("x", at("link", "file"));
        assertFile("x", at("other", "back", "file"));
        provider.createFile(at("other", "back", "new"));
        assertFile("", at("folder", "new"));
        provider.removeFile(at("link", "new"));
        assertMissing(at("folder", "new"));
    }

    @Test
    void linkToAFileIsRemovedItself() throws Exception {
        StorageURI file = file("x", "file");
        StorageURI link = link("file", "link");
        provider.removeFile(link);
        assertNothing(link);
        assertFile("x", file);
    }

    @Test
    void linkToAFullFolderIsRemovedItself() throws Exception {
        folder("folder");
        StorageURI file = file("x", "folder", "file");
        StorageURI link = link("folder", "link");
        assertFails(ErrorCode.NOT_A_FILE, link, () -> provider.removeFile(link));
        provider.removeFolder(link);
        assertNothing(link);
        assertFile("x", file);
    }

    @Test
    void recursiveRemovalOfALinkRemovesTheLink() throws Exception {
        folder("folder");
        StorageURI file = file("x", "folder", "file");
        StorageURI link = link("folder", "link");
        provider.removeFolderRecursively(link);
        assertNothing(link);
        assertFile("x", file);
    }

    @Test
    void recursiveRemovalDoesNotFollowLinks() throws Exception {
        StorageURI kept = file("x", "kept");
        folder("keptFolder");
        StorageURI keptChild = file("y", "keptFolder", "child");
        StorageURI doomed = folder("doomed");
        link("../kept", "doomed", "file");
        link("../keptFolder", "doomed", "folder");
        link("..", "doomed", "up");
        link("nowhere", "doomed", "dangling");
        provider.removeFolderRecursively(doomed);
        assertNothing(doomed);
        assertFile("x", kept);
        assertFile("y", keptChild);
    }

    @Test
    void linkThatLeadsNowhereIsRemovedAsAFile() throws Exception {
        StorageURI link = link("nowhere", "link");
        assertFails(ErrorCode.NOT_A_FOLDER, link, () -> provider.removeFolder(link));
        assertFails(ErrorCode.NOT_A_FOLDER, link, () -> provider.removeFolderRecursively(link));
        provider.removeFile(link);
        assertNothing(link);
    }

    @Test
    void nothingIsCreatedThroughALinkThatLeadsNowhere() throws Exception {
        StorageURI link = link("nowhere", "link");
        assertFails(ErrorCode.ALREADY_EXISTS, link, () -> provider.createFile(link));
        assertFails(ErrorCode.ALREADY_EXISTS, link, () -> provider.createFolder(link));
        assertNothing(at("nowhere"));
        assertFails(ErrorCode.NOT_FOUND, at("link", "a"), () -> provider.createFile(at("link", "a")));
    }

    @Test
    void linksInACircleEndInAnError() throws Exception {
        StorageURI link = link("other", "link");
        StorageURI other = link("link", "other");
        assertFails(ErrorCode.INVALID_LOCATION, link, () -> provider.fileExists(link));
        provider.removeFile(link);
        provider.moveFile(other, link, /* replace= */ false);
        assertNothing(other);
    }

    @Test
    void linksAreListedAsWhatTheyLeadTo() throws Exception {
        folder("links");
        folder("folder");
        file("x", "file");
        link("../file", "links", "toFile");
        link("../folder", "links", "toFolder");
        link("toFolder", "links", "toLink");
        link("nowhere", "links", "dangling");
        link("circle", "links", "circle");
        Map<String, Boolean> listed = new TreeMap<>();
        for (FolderListEntry entry : provider.listFolder(at("links"))) {
            listed.put(entry.getName(), entry.isFolder());
        }
        assertEquals(
                Map.of("toFile", false, "toFolder", true, "toLink", true, "dangling", false, "circle", false), listed);
    }

    @Test
    void folderIsListedThroughALink() throws Exception {
        folder("folder");
        file("x", "folder", "child");
        StorageURI link = link("folder", "link");
        assertEquals(new FolderListEntry("child", /* folder= */ false), provider.listFolder(link)[0]);
    }

    @Test
    void attributesAreThoseOfTheTarget() throws Exception {
        StorageURI file = file("hello", "file");
        StorageURI link = link("file", "link");
        provider.setLastModified(link, 1_000_000_000_000L);
        assertEquals(1_000_000_000_000L, provider.getFileAttributes(file).getLastModified());
        assertEquals(5, provider.getFileAttributes(link).getSize());
        StorageURI dangling = link("nowhere", "dangling");
        assertFails(ErrorCode.NOT_FOUND, dangling, () -> provider.getFileAttributes(dangling));
    }

    @Test
    void linkIsMarkedAsALink() throws Exception {
        file("hello", "file");
        ExtendedAttribute marked = new ExtendedAttribute("basic:isSymbolicLink", "true");
        StorageURI link = link("file", "link");
        assertTrue(Arrays.asList(provider.getExtendedAttributes(link).getAllAttributes()).contains(marked));
    }

    @Test
    void fileKeyIsThatOfWhatALinkLeadsTo() throws Exception {
        StorageURI file = file("x", "file");
        assertFalse(fileKeyOf(file).isEmpty());
        assertEquals(fileKeyOf(file), fileKeyOf(link("file", "link")));
        assertNotEquals(fileKeyOf(file), fileKeyOf(file("x", "other")));
    }

    private String fileKeyOf(StorageURI location) throws Exception {
        return Arrays.stream(provider.getExtendedAttributes(location).getAllAttributes())
                .filter(attribute -> attribute.getName().equals("basic:fileKey"))
                .map(ExtendedAttribute::getValue)
                .findFirst()
                .orElse("");
    }

    @Test
    void targetIsReadAndWritten() throws Exception {
        StorageURI file = file("hello", "file");
        StorageURI link = link("file", "link");
        try (ProviderChannel channel = provider.getChannel(link, false, false, /* exclusive= */ true)) {
            assertFails(ErrorCode.IN_USE, file, () -> provider.getReadOnlyChannel(file));
            ChannelText.write(channel, "HE");
        }
        assertFile("HEllo", file);
        assertLink(link);
    }

    @Test
    void targetThatIsMissingIsCreated() throws Exception {
        StorageURI link = link("new", "link");
        provider.getChannel(link, /* create= */ true, false, false).close();
        assertFile("", at("new"));
        assertLink(link);
        StorageURI lost = link("missing/new", "lost");
        assertFails(ErrorCode.NOT_FOUND, lost, () -> provider.getChannel(lost, true, false, false));
    }
}
