package com.corvallen.storage.test.soak;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.EventPublisher;
import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.ExtendedFeature;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.ProviderException;
import com.corvallen.storage.provider.ProviderStorageInfo;
import com.corvallen.storage.provider.StorageProvider;
import com.corvallen.storage.provider.StorageURI;
import java.util.HashMap;
import java.util.Map;
import java.util.concurrent.ConcurrentHashMap;

/**
 * A back end in memory, all of whose operations fail at random. It has one level of folders below the root. The bytes
 * of an entry show whether it is a file.
 */
public final class FlakyProvider implements StorageProvider {
    private static final int CONTENT = 4096;
    private static final byte[] FOLDER = {};
    /** Copies leave what they cannot remove; beyond this many entries nothing new is taken in. */
    private static final int MOST_ENTRIES = 500;

    private final Map<String, byte[]> entries = new ConcurrentHashMap<>();
    private final Storm storm = new Storm();

    /** Sets the seed, as a decimal number. */
    public static void seed(String seed) {
        Chance.seed(Long.parseLong(seed));
    }

    /** Whether no event is under way that no operation waits for. */
    public static String isQuiet() {
        return Boolean.toString(Storm.isQuiet());
    }

    /** How many events back ends have published. */
    public static String published() {
        return Long.toString(Storm.published());
    }

    @Override
    public boolean fileExists(StorageURI location) throws ProviderException {
        return isFile(entryAt(location));
    }

    @Override
    public boolean folderExists(StorageURI location) throws ProviderException {
        return entryAt(location) == FOLDER;
    }

    @Override
    public void createFile(StorageURI location) throws ProviderException {
        add(location, new byte[CONTENT]);
    }

    @Override
    public void createFolder(StorageURI location) throws ProviderException {
        add(location, FOLDER);
    }

    @Override
    public void removeFile(StorageURI location) throws ProviderException {
        Chance.mayFail(location);
        require(entries.remove(location.getText()) != null, ErrorCode.NOT_FOUND, location);
    }

    @Override
    public void removeFolder(StorageURI location) throws ProviderException {
        removeFile(location);
    }

    @Override
    public void removeFolderRecursively(StorageURI location) throws ProviderException {
        Chance.mayFail(location);
        entries.keySet().removeIf(text -> text.startsWith(location.getText()));
    }

    @Override
    public boolean hasFeature(ExtendedFeature feature) {
        return Chance.below(2) == 0;
    }

    @Override
    public void moveFile(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        Chance.mayFail(source);
        require(replace || !entries.containsKey(target.getText()), ErrorCode.ALREADY_EXISTS, target);
        byte[] content = entries.remove(source.getText());
        require(content != null, ErrorCode.NOT_FOUND, source);
        entries.put(target.getText(), content);
    }

    @Override
    public void moveFolder(StorageURI source, StorageURI target, boolean replace) throws ProviderException {
        moveFile(source, target, replace);
    }

    @Override
    public FileAttributes getFileAttributes(StorageURI location) throws ProviderException {
        byte[] content = entryAt(location);
        require(isFile(content), ErrorCode.NOT_FOUND, location);
        return new FileAttributes(content.length, System.currentTimeMillis(), true);
    }

    @Override
    public FolderAttributes getFolderAttributes(StorageURI location) throws ProviderException {
        Chance.mayFail(location);
        return new FolderAttributes(System.currentTimeMillis(), true);
    }

    @Override
    public void setLastModified(StorageURI location, long lastModified) throws ProviderException {
        Chance.mayFail(location);
    }

    @Override
    public FolderListEntry[] listFolder(StorageURI location) throws ProviderException {
        Chance.mayFail(location);
        String folder = location.getText() + "/";
        return entries.entrySet().stream()
                .filter(entry -> entry.getKey().lastIndexOf('/') == folder.length() - 1)
                .filter(entry -> entry.getKey().startsWith(folder))
                .map(entry -> new FolderListEntry(
                        entry.getKey().substring(folder.length()), entry.getValue() == FOLDER))
                .limit(20)
                .toArray(FolderListEntry[]::new);
    }

    @Override
    public ProviderChannel getChannel(StorageURI location, boolean create, boolean truncate, boolean exclusive)
            throws ProviderException {
        if (create && entryAt(location) == null) {
            add(location, new byte[CONTENT]);
        }
        return getReadOnlyChannel(location);
    }

    @Override
    public ProviderChannel getReadOnlyChannel(StorageURI location) throws ProviderException {
        byte[] content = entryAt(location);
        require(isFile(content), ErrorCode.NOT_FOUND, location);
        return new FlakyChannel(location, content);
    }

    @Override
    public void publishEventsFor(StorageURI location, EventPublisher publisher) throws ProviderException {
        Chance.mayFail(location);
        storm.publishFrom(location, publisher);
    }

    @Override
    public void stopPublishingEventsFor(StorageURI location) throws ProviderException {
        Chance.mayFail(location);
    }

    @Override
    public void dispose() {
        storm.close();
    }

    @Override
    public ExtendedAttributes getExtendedAttributes(StorageURI location) throws ProviderException {
        Chance.mayFail(location);
        return new ExtendedAttributes(
                new ExtendedAttribute("name", location.getText()), new ExtendedAttribute("nothing", null));
    }

    @Override
    public ProviderStorageInfo getProviderStorageInfo(StorageURI location) throws ProviderException {
        Chance.mayFail(location);
        return new ProviderStorageInfo(1L << 40, Chance.below(1 << 30));
    }

    @Override
    public void configure(HashMap<String, String> settings) throws ProviderException {
        Chance.mayFail(null);
    }

    private byte[] entryAt(StorageURI location) throws ProviderException {
        Chance.mayFail(location);
        return entries.get(location.getText());
    }

    private void add(StorageURI location, byte[] content) throws ProviderException {
        Chance.mayFail(location);
        require(entries.size() < MOST_ENTRIES, ErrorCode.STORAGE_FULL, location);
        require(entries.putIfAbsent(location.getText(), content) == null, ErrorCode.ALREADY_EXISTS, location);
    }

    private static boolean isFile(byte[] content) {
        return content != null && content != FOLDER;
    }

    private static void require(boolean condition, ErrorCode code, StorageURI location) throws ProviderException {
        if (!condition) {
            throw new ProviderException(code, location);
        }
    }
}
