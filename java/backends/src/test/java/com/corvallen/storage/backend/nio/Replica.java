package com.corvallen.storage.backend.nio;

import com.corvallen.storage.contract.RecordingPublisher;
import com.corvallen.storage.provider.EntryType;
import com.corvallen.storage.provider.EventKind;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import java.util.ArrayList;
import java.util.List;
import java.util.TreeMap;
import java.util.concurrent.TimeUnit;

/**
 * A host's picture of a folder, built from events: an added folder is empty at first, and a removed one takes
 * everything below it along.
 */
final class Replica extends RecordingPublisher {
    private static final long DEADLINE = TimeUnit.SECONDS.toNanos(40);

    private final TreeMap<String, EntryType> known = new TreeMap<>();
    private final List<String> mistakes = new ArrayList<>();

    @Override
    public synchronized void publish(
            EventKind kind, StorageURI watched, StorageURI changed, EntryType type, String originId) {
        String path = changed.getText();
        if (kind == EventKind.ChildAdded || kind == EventKind.ChildRemoved) {
            if (known.containsKey(path) == (kind == EventKind.ChildAdded)) {
                mistakes.add(kind + " twice: " + path);
            }
            known.remove(path);
            known.keySet().removeIf(below -> below.startsWith(path + "/"));
        }
        if (kind == EventKind.ChildAdded) {
            known.put(path, type);
        }
        super.publish(kind, watched, changed, type, originId);
    }

    /** Takes over a listing. */
    synchronized void list(StorageProvider provider, StorageURI folder) throws ProviderException {
        known.putAll(contentOf(provider, folder));
    }

    synchronized List<String> mistakes() {
        return new ArrayList<>(mistakes);
    }

    synchronized TreeMap<String, EntryType> known() {
        return new TreeMap<>(known);
    }

    /** Waits until this equals a listing. */
    void awaitListing(StorageProvider provider, StorageURI folder) throws ProviderException {
        TreeMap<String, EntryType> listed = contentOf(provider, folder);
        long end = System.nanoTime() + DEADLINE;
        while (!known().equals(listed)) {
            if (System.nanoTime() > end) {
                throw new AssertionError("listed: " + listed + "\n known: " + known() + "\n reported: " + events());
            }
            Thread.onSpinWait();
        }
    }

    private static TreeMap<String, EntryType> contentOf(StorageProvider provider, StorageURI folder)
            throws ProviderException {
        TreeMap<String, EntryType> result = new TreeMap<>();
        collect(provider, folder, result);
        return result;
    }

    /** Leaves out what is removed during the listing. */
    private static void collect(StorageProvider provider, StorageURI folder, TreeMap<String, EntryType> result)
            throws ProviderException {
        for (FolderListEntry entry : provider.listFolder(folder)) {
            StorageURI child = folder.resolve(entry.getName());
            result.put(child.getText(), entry.isFolder() ? EntryType.Folder : EntryType.File);
            if (entry.isFolder()) {
                try {
                    collect(provider, child, result);
                } catch (ProviderException e) {
                    continue;
                }
            }
        }
    }
}
