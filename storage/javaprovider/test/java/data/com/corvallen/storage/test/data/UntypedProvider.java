package com.corvallen.storage.test.data;

import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderStorageInfo;
import com.corvallen.storage.provider.StorageURI;
import com.corvallen.storage.test.ScriptedProvider;

/**
 * A back end that gives native code objects of any class: what a native method returns is held against no type. The
 * test registers the native methods; each gives {@link #answer}.
 */
public final class UntypedProvider extends ScriptedProvider {
    private static Object answer;

    /** From now on all native methods give a new object of this class of {@link OddValues}. */
    public static void answerWithNew(String className) throws ReflectiveOperationException {
        Class<?> type = Class.forName(OddValues.class.getName() + "$" + className);
        answerWith(type.getDeclaredConstructor().newInstance());
    }

    /** From now on all native methods give an array that holds entries and other things. */
    public static void answerWithMixedListing() {
        answerWith(new Object[] {
            "a text", new FolderListEntry("a", false), new Object(), new FolderListEntry("B", true), new int[0]
        });
    }

    private static synchronized void answerWith(Object value) {
        answer = value;
    }

    static synchronized Object answer() {
        return answer;
    }

    @Override
    public native FileAttributes getFileAttributes(StorageURI location);

    @Override
    public native FolderAttributes getFolderAttributes(StorageURI location);

    @Override
    public native FolderListEntry[] listFolder(StorageURI location);

    @Override
    public native ExtendedAttributes getExtendedAttributes(StorageURI location);

    @Override
    public native ProviderStorageInfo getProviderStorageInfo(StorageURI location);
}
