package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.ExtendedFeature;
import com.corvallen.storage.provider.StorageURI;
import java.util.List;
import org.junit.jupiter.api.Assumptions;
import org.junit.jupiter.api.Test;

/** The cases of {@code publishEventsFor} and {@code stopPublishingEventsFor}. */
public abstract class PublishEventsContract extends OperationContract {
    private final RecordingPublisher publisher = new RecordingPublisher();

    protected PublishEventsContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    /** Changes the time clearly, for storages with coarse clocks. */
    private void modify(StorageURI file, String content) throws Exception {
        storage.write(file, content);
        provider.setLastModified(file, System.currentTimeMillis() + 60_000);
    }

    @Test
    void newChildrenAreAdded() throws Exception {
        StorageURI f = folder("f");
        provider.publishEventsFor(f, publisher);
        StorageURI file = file("x", "f", "file");
        StorageURI inner = folder("f", "inner");
        publisher.await(EventKind.ChildAdded, EntryType.File, file);
        publisher.await(EventKind.ChildAdded, EntryType.Folder, inner);
        assertTrue(publisher.events().stream().allMatch(event -> event.watched.equals(f)));
    }

    @Test
    void removedChildrenAreRemoved() throws Exception {
        StorageURI f = folder("f");
        StorageURI file = file("x", "f", "file");
        StorageURI inner = folder("f", "inner");
        provider.publishEventsFor(f, publisher);
        provider.removeFile(file);
        provider.removeFolder(inner);
        publisher.await(EventKind.ChildRemoved, EntryType.File, file);
        publisher.await(EventKind.ChildRemoved, EntryType.Folder, inner);
    }

    @Test
    void changedChildIsModified() throws Exception {
        StorageURI f = folder("f");
        StorageURI file = file("x", "f", "file");
        provider.publishEventsFor(f, publisher);
        modify(file, "longer");
        publisher.await(EventKind.ChildModified, EntryType.File, file);
    }

    @Test
    void renamedChildIsRemovedAndAdded() throws Exception {
        StorageURI f = folder("f");
        StorageURI old = file("x", "f", "old");
        provider.publishEventsFor(f, publisher);
        provider.moveFile(old, at("f", "new"), /* replace= */ false);
        publisher.await(EventKind.ChildRemoved, EntryType.File, old);
        publisher.await(EventKind.ChildAdded, EntryType.File, at("f", "new"));
    }

    @Test
    void whatWasThereBeforeIsNotReported() throws Exception {
        StorageURI f = folder("f");
        StorageURI before = file("x", "f", "before");
        provider.publishEventsFor(f, publisher);
        StorageURI after = file("x", "f", "after");
        publisher.await(EventKind.ChildAdded, EntryType.File, after);
        assertEquals(List.of(), publisher.eventsOf(before));
    }

    @Test
    void changedFileModifiesItself() throws Exception {
        StorageURI a = file("x", "a");
        provider.publishEventsFor(a, publisher);
        modify(a, "longer");
        publisher.await(EventKind.SelfModified, EntryType.File, a);
        assertTrue(publisher.events().stream().allMatch(event -> event.watched.equals(a)));
    }

    @Test
    void neighbourOfAFileIsNotReported() throws Exception {
        StorageURI a = file("x", "a");
        StorageURI b = file("x", "b");
        provider.publishEventsFor(a, publisher);
        modify(b, "longer");
        provider.removeFile(b);
        modify(a, "longer");
        publisher.await(EventKind.SelfModified, EntryType.File, a);
        assertTrue(publisher.events().stream().allMatch(event -> event.changed.equals(a)));
    }

    @Test
    void removedFileRemovesItself() throws Exception {
        StorageURI a = file("x", "a");
        provider.publishEventsFor(a, publisher);
        provider.removeFile(a);
        publisher.await(EventKind.SelfRemoved, EntryType.File, a);
    }

    @Test
    void removedFolderRemovesItselfLast() throws Exception {
        StorageURI f = folder("f");
        StorageURI child = file("x", "f", "child");
        provider.publishEventsFor(f, publisher);
        provider.removeFolderRecursively(f);
        publisher.await(EventKind.SelfRemoved, EntryType.Folder, f);
        assertEquals(List.of("ChildRemoved File"), publisher.eventsOf(child));
        assertEquals(List.of("SelfRemoved Folder"), publisher.eventsOf(f));
    }

    @Test
    void folderThatMovesAwayRemovesItself() throws Exception {
        StorageURI f = folder("f");
        file("x", "f", "child");
        provider.publishEventsFor(f, publisher);
        provider.moveFolder(f, at("g"), /* replace= */ false);
        publisher.await(EventKind.SelfRemoved, EntryType.Folder, f);
    }

    @Test
    void rootIsWatched() throws Exception {
        provider.publishEventsFor(at(), publisher);
        StorageURI a = file("x", "a");
        publisher.await(EventKind.ChildAdded, EntryType.File, a);
    }

    @Test
    void everythingBelowIsReportedIfTheFeatureSaysSo() throws Exception {
        Assumptions.assumeTrue(provider.hasFeature(ExtendedFeature.RecursiveChangeEvents));
        StorageURI f = folder("f");
        folder("f", "inner");
        provider.publishEventsFor(f, publisher);
        StorageURI deep = file("x", "f", "inner", "deep");
        publisher.await(EventKind.ChildAdded, EntryType.File, deep);
        StorageURI fresh = folder("f", "fresh");
        StorageURI fast = file("x", "f", "fresh", "fast");
        publisher.await(EventKind.ChildAdded, EntryType.Folder, fresh);
        publisher.await(EventKind.ChildAdded, EntryType.File, fast);
        provider.removeFolderRecursively(fresh);
        publisher.await(EventKind.ChildRemoved, EntryType.File, fast);
        publisher.await(EventKind.ChildRemoved, EntryType.Folder, fresh);
    }

    @Test
    void onlyChildrenAreReportedIfTheFeatureIsMissing() throws Exception {
        Assumptions.assumeFalse(provider.hasFeature(ExtendedFeature.RecursiveChangeEvents));
        StorageURI f = folder("f");
        folder("f", "inner");
        provider.publishEventsFor(f, publisher);
        StorageURI deep = file("x", "f", "inner", "deep");
        StorageURI shallow = file("x", "f", "shallow");
        publisher.await(EventKind.ChildAdded, EntryType.File, shallow);
        assertEquals(List.of(), publisher.eventsOf(deep));
    }

    @Test
    void startingAgainChangesThePublisher() throws Exception {
        StorageURI f = folder("f");
        provider.publishEventsFor(f, publisher);
        StorageURI first = file("x", "f", "first");
        publisher.await(EventKind.ChildAdded, EntryType.File, first);
        RecordingPublisher other = new RecordingPublisher();
        provider.publishEventsFor(f, other);
        provider.publishEventsFor(f, other);
        StorageURI second = folder("f", "second");
        other.await(EventKind.ChildAdded, EntryType.Folder, second);
        assertEquals(List.of("ChildAdded Folder"), other.eventsOf(second));
        assertEquals(List.of(), publisher.eventsOf(second));
        assertFalse(publisher.isClosed());
    }

    @Test
    void stoppedLocationIsSilentAndOthersAreNot() throws Exception {
        StorageURI f = folder("f");
        StorageURI g = folder("g");
        provider.publishEventsFor(f, publisher);
        provider.publishEventsFor(g, publisher);
        provider.stopPublishingEventsFor(f);
        StorageURI unseen = file("x", "f", "unseen");
        StorageURI seen = file("x", "g", "seen");
        publisher.await(EventKind.ChildAdded, EntryType.File, seen);
        assertEquals(List.of(), publisher.eventsOf(unseen));
        assertFalse(publisher.isClosed());
    }

    @Test
    void stoppedLocationIsStartedAgain() throws Exception {
        StorageURI f = folder("f");
        provider.publishEventsFor(f, publisher);
        provider.stopPublishingEventsFor(f);
        StorageURI between = file("x", "f", "between");
        provider.publishEventsFor(f, publisher);
        StorageURI after = file("x", "f", "after");
        publisher.await(EventKind.ChildAdded, EntryType.File, after);
        assertEquals(List.of(), publisher.eventsOf(between));
    }

    @Test
    void thereIsNothingToStop() throws Exception {
        provider.stopPublishingEventsFor(folder("f"));
        provider.stopPublishingEventsFor(at("missing"));
        StorageURI g = folder("g");
        provider.publishEventsFor(g, publisher);
        provider.removeFolder(g);
        publisher.await(EventKind.SelfRemoved, EntryType.Folder, g);
        provider.stopPublishingEventsFor(g);
        provider.stopPublishingEventsFor(g);
    }

    @Test
    void missingIsNotFound() throws Exception {
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.publishEventsFor(a, publisher));
    }

    @Test
    void disposalClosesEveryPublisher() throws Exception {
        StorageURI f = folder("f");
        RecordingPublisher replaced = new RecordingPublisher();
        RecordingPublisher stopped = new RecordingPublisher();
        provider.publishEventsFor(f, replaced);
        provider.publishEventsFor(f, publisher);
        provider.publishEventsFor(at(), stopped);
        provider.stopPublishingEventsFor(at());
        provider.dispose();
        assertTrue(publisher.isClosed());
        assertTrue(replaced.isClosed());
        assertTrue(stopped.isClosed());
        assertFails(ErrorCode.UNAVAILABLE, f, () -> provider.publishEventsFor(f, publisher));
    }
}
