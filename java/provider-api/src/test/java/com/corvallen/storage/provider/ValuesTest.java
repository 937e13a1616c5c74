package com.corvallen.storage.provider;

import static org.junit.jupiter.api.Assertions.assertArrayEquals;
import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertNotEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertThrows;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.lang.reflect.Modifier;
import java.util.Arrays;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

class ValuesTest {
    @Test
    void fileAttributesAreHandedOnAsTheyAre() {
        FileAttributes attributes = new FileAttributes(-1, Long.MIN_VALUE, true);
        assertEquals(-1, attributes.getSize());
        assertEquals(Long.MIN_VALUE, attributes.getLastModified());
        assertTrue(attributes.isWritable());
        assertEquals(attributes, new FileAttributes(-1, Long.MIN_VALUE, true));
        assertEquals(attributes.hashCode(), new FileAttributes(-1, Long.MIN_VALUE, true).hashCode());
        assertNotEquals(attributes, new FileAttributes(-1, Long.MIN_VALUE, false));
    }

    @Test
    void folderAttributesAreHandedOnAsTheyAre() {
        FolderAttributes attributes = new FolderAttributes(-7, false);
        assertEquals(-7, attributes.getLastModified());
        assertFalse(attributes.isWritable());
        assertEquals(attributes, new FolderAttributes(-7, false));
        assertNotEquals(attributes, new FolderAttributes(-8, false));
    }

    @Test
    void storageInfoIsHandedOnAsItIs() {
        ProviderStorageInfo info = new ProviderStorageInfo(-1, 5);
        assertEquals(-1, info.getStorageCapacity());
        assertEquals(5, info.getSpaceOccupied());
        assertEquals(info, new ProviderStorageInfo(-1, 5));
        assertNotEquals(info, new ProviderStorageInfo(5, -1));
    }

    @Test
    void listEntryToleratesNullName() {
        FolderListEntry entry = new FolderListEntry(null, true);
        assertNull(entry.getName());
        assertTrue(entry.isFolder());
        assertEquals(entry, new FolderListEntry(null, true));
        assertNotEquals(entry, new FolderListEntry("a", true));
        assertEquals("FolderListEntry[null/]", entry.toString());
        assertEquals(entry.hashCode(), new FolderListEntry(null, true).hashCode());
    }

    @Test
    void extendedAttributeToleratesNullTexts() {
        ExtendedAttribute attribute = new ExtendedAttribute(null, null);
        assertNull(attribute.getName());
        assertNull(attribute.getValue());
        assertEquals(attribute, new ExtendedAttribute(null, null));
        assertNotEquals(attribute, new ExtendedAttribute("a", null));
        assertEquals(attribute.hashCode(), new ExtendedAttribute(null, null).hashCode());
    }

    @Test
    void extendedAttributesKeepTheirOrder() {
        ExtendedAttribute[] two = {new ExtendedAttribute("b", "1"), new ExtendedAttribute("a", "2")};
        assertArrayEquals(two, new ExtendedAttributes(two).getAllAttributes());
        assertArrayEquals(two, new ExtendedAttributes(Arrays.asList(two)).getAllAttributes());
        assertEquals(new ExtendedAttributes(two), new ExtendedAttributes(List.of(two)));
    }

    @Test
    void extendedAttributesCannotBeChangedFromOutside() {
        ExtendedAttribute[] given = {new ExtendedAttribute("a", "1")};
        ExtendedAttributes attributes = new ExtendedAttributes(given);
        given[0] = null;
        attributes.getAllAttributes()[0] = null;
        assertEquals("a", attributes.getAllAttributes()[0].getName());
    }

    @Test
    void noExtendedAttributesAreAnEmptyArray() {
        assertEquals(0, ExtendedAttributes.none().getAllAttributes().length);
    }

    @Test
    void extendedAttributesRefuseNullElements() {
        assertThrows(
                NullPointerException.class,
                () -> new ExtendedAttributes(new ExtendedAttribute("a", "1"), (ExtendedAttribute) null));
    }

    @ParameterizedTest
    @ValueSource(
            classes = {
                StorageURI.class,
                FileAttributes.class,
                FolderAttributes.class,
                FolderListEntry.class,
                ExtendedAttributes.class,
                ExtendedAttribute.class,
                ProviderStorageInfo.class,
                NativePublisher.class
            })
    void noOneCanOverrideAGetter(Class<?> type) {
        assertTrue(Modifier.isFinal(type.getModifiers()));
    }
}
