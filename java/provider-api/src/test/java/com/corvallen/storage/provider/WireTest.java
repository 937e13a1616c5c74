package com.corvallen.storage.provider;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.invoke.MethodType;
import java.lang.reflect.Constructor;
import java.lang.reflect.Method;
import java.lang.reflect.Modifier;
import java.util.Arrays;
import java.util.TreeSet;
import java.util.stream.Stream;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.CsvSource;

/** Everything the native side finds by name: spelling and signatures. */
class WireTest {
    private static final String PACKAGE = "com.corvallen.storage.provider.";

    private static String descriptor(Method method) {
        return MethodType.methodType(method.getReturnType(), method.getParameterTypes())
                .toMethodDescriptorString()
                .replace("com/corvallen/storage/provider/", "");
    }

    private static Stream<String> methodsOf(Class<?> type) {
        return Arrays.stream(type.getMethods())
                .filter(method -> !method.isSynthetic())
                .map(method -> method.getName() + descriptor(method));
    }

    @Test
    void providerHasExactlyTheTwentyTwoMethods() {
        String[] expected = {
            "fileExists(LStorageURI;)Z",
            "folderExists(LStorageURI;)Z",
            "createFile(LStorageURI;)V",
            "createFolder(LStorageURI;)V",
            "removeFile(LStorageURI;)V",
            "removeFolder(LStorageURI;)V",
            "removeFolderRecursively(LStorageURI;)V",
            "hasFeature(LExtendedFeature;)Z",
            "moveFile(LStorageURI;LStorageURI;Z)V",
            "moveFolder(LStorageURI;LStorageURI;Z)V",
            "getFileAttributes(LStorageURI;)LFileAttributes;",
            "getFolderAttributes(LStorageURI;)LFolderAttributes;",
            "setLastModified(LStorageURI;J)V",
            "listFolder(LStorageURI;)[LFolderListEntry;",
            "getChannel(LStorageURI;ZZZ)LProviderChannel;",
            "getReadOnlyChannel(LStorageURI;)LProviderChannel;",
            "publishEventsFor(LStorageURI;LEventPublisher;)V",
            "stopPublishingEventsFor(LStorageURI;)V",
            "dispose()V",
            "getExtendedAttributes(LStorageURI;)LExtendedAttributes;",
            "getProviderStorageInfo(LStorageURI;)LProviderStorageInfo;",
            "configure(Ljava/util/HashMap;)V"
        };
        Arrays.sort(expected);
        assertArrayEquals(expected, methodsOf(StorageProvider.class).sorted().toArray());
    }

    @Test
    void channelHasExactlyTheSixMethods() {
        String[] expected = {
            "close()V",
            "position()J",
            "position(J)V",
            "read(Ljava/nio/ByteBuffer;)I",
            "size()J",
            "write(Ljava/nio/ByteBuffer;)I"
        };
        assertArrayEquals(expected, methodsOf(ProviderChannel.class).sorted().toArray());
    }

    @ParameterizedTest
    @CsvSource({
        "FileAttributes, getSize()J",
        "FileAttributes, getLastModified()J",
        "FileAttributes, isWritable()Z",
        "FolderAttributes, getLastModified()J",
        "FolderAttributes, isWritable()Z",
        "FolderListEntry, getName()Ljava/lang/String;",
        "FolderListEntry, isFolder()Z",
        "ExtendedAttributes, getAllAttributes()[LExtendedAttribute;",
        "ExtendedAttribute, getName()Ljava/lang/String;",
        "ExtendedAttribute, getValue()Ljava/lang/String;",
        "ProviderStorageInfo, getStorageCapacity()J",
        "ProviderStorageInfo, getSpaceOccupied()J",
        "ProviderException, getErrorCodeNumber()I",
        "ProviderException, getLocationString()Ljava/lang/String;"
    })
    void getterIsThere(String type, String signature) throws ClassNotFoundException {
        assertTrue(methodsOf(Class.forName(PACKAGE + type)).anyMatch(signature::equals));
    }

    @Test
    void locationIsMadeFromOneText() throws NoSuchMethodException {
        Constructor<StorageURI> constructor = StorageURI.class.getConstructor(String.class);
        assertTrue(Modifier.isPublic(constructor.getModifiers()));
    }

    @Test
    void publisherIsMadeFromAHandle() throws NoSuchMethodException {
        assertTrue(Modifier.isPublic(NativePublisher.class.getConstructor(long.class).getModifiers()));
        assertTrue(EventPublisher.class.isAssignableFrom(NativePublisher.class));
    }

    @Test
    void nativeMethodTakesTheHandleAndFiveTexts() throws NoSuchMethodException {
        Class<?> text = String.class;
        Method method =
                NativePublisher.class.getDeclaredMethod("nativePublish", long.class, text, text, text, text, text);
        assertTrue(Modifier.isNative(method.getModifiers()));
        assertFalse(Modifier.isStatic(method.getModifiers()));
        assertEquals(void.class, method.getReturnType());
    }

    @Test
    void wordsOfEnumsAreThoseOfTheWire() {
        assertWords(ExtendedFeature.values(), "AllowsMovesAndDeletesWhenOpen", "AllowsMovesAndDeletesWhenOpenReadOnly",
                "RecursiveChangeEvents", "RecursiveFolderRemoval");
        assertWords(EventKind.values(), "ChildAdded", "ChildModified", "ChildRemoved", "SelfModified", "SelfRemoved");
        assertWords(EntryType.values(), "File", "Folder");
    }

    private static void assertWords(Enum<?>[] constants, String... words) {
        TreeSet<String> names = new TreeSet<>();
        Arrays.stream(constants).map(Enum::name).forEach(names::add);
        assertArrayEquals(words, names.toArray());
    }
}
