package com.corvallen.storage.test.data;

import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.ExtendedAttributes;
import com.corvallen.storage.provider.FileAttributes;
import com.corvallen.storage.provider.FolderAttributes;
import com.corvallen.storage.provider.FolderListEntry;
import com.corvallen.storage.provider.ProviderStorageInfo;
import com.corvallen.storage.test.Script;
import java.util.Arrays;
import java.util.stream.Stream;

/** Makes the contract's values from text and has the script answer with them. The text "(null)" stands for null. */
public final class Answers {
    private Answers() {}

    public static void fileAttributes(String size, String lastModified, String writable) {
        Script.answer(
                "getFileAttributes",
                new FileAttributes(
                        Long.parseLong(size), Long.parseLong(lastModified), Boolean.parseBoolean(writable)));
    }

    public static void folderAttributes(String lastModified, String writable) {
        Script.answer(
                "getFolderAttributes",
                new FolderAttributes(Long.parseLong(lastModified), Boolean.parseBoolean(writable)));
    }

    public static void storageInfo(String capacity, String occupied) {
        Script.answer(
                "getProviderStorageInfo",
                new ProviderStorageInfo(Long.parseLong(capacity), Long.parseLong(occupied)));
    }

    /** One line for each attribute: name, equals sign, value. */
    public static void extendedAttributes(String text) {
        Script.answer(
                "getExtendedAttributes",
                new ExtendedAttributes(lines(text).map(Answers::attribute).toArray(ExtendedAttribute[]::new)));
    }

    /** One line for each child; a slash at its end marks a folder. */
    public static void listing(String text) {
        Script.answer("listFolder", lines(text).map(Answers::entry).toArray(FolderListEntry[]::new));
    }

    /** So many children, "0" to the last; every third is a folder. */
    public static void longListing(String count) {
        FolderListEntry[] entries = new FolderListEntry[Integer.parseInt(count)];
        Arrays.setAll(entries, i -> new FolderListEntry(Integer.toString(i), i % 3 == 0));
        Script.answer("listFolder", entries);
    }

    private static Stream<String> lines(String text) {
        return text.isEmpty() ? Stream.empty() : Stream.of(text.split("\n", -1));
    }

    private static ExtendedAttribute attribute(String line) {
        int separator = line.indexOf('=');
        return new ExtendedAttribute(orNull(line.substring(0, separator)), orNull(line.substring(separator + 1)));
    }

    private static FolderListEntry entry(String line) {
        boolean folder = line.endsWith("/");
        return new FolderListEntry(orNull(folder ? line.substring(0, line.length() - 1) : line), folder);
    }

    private static String orNull(String text) {
        return text.equals("(null)") ? null : text;
    }
}
