package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNotNull;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ExtendedAttribute;
import com.corvallen.storage.provider.StorageURI;
import java.util.HashSet;
import java.util.Set;
import org.junit.jupiter.api.Test;

/** The cases of {@code getExtendedAttributes}. */
public abstract class GetExtendedAttributesContract extends OperationContract {
    protected GetExtendedAttributesContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    private void assertWellFormed(StorageURI location) throws Exception {
        ExtendedAttribute[] attributes = provider.getExtendedAttributes(location).getAllAttributes();
        Set<String> names = new HashSet<>();
        for (ExtendedAttribute attribute : attributes) {
            assertNotNull(attribute.getName());
            assertNotNull(attribute.getValue());
            names.add(attribute.getName());
        }
        assertEquals(attributes.length, names.size(), "a name occurs twice");
    }

    @Test
    void fileFolderAndRootHaveSome() throws Exception {
        assertWellFormed(file("x", "file"));
        assertWellFormed(folder("folder"));
        assertWellFormed(at());
    }

    @Test
    void askingTwiceGivesTheSameOrder() throws Exception {
        StorageURI a = file("x", "a");
        assertEquals(provider.getExtendedAttributes(a), provider.getExtendedAttributes(a));
    }

    @Test
    void missingIsNotFound() throws Exception {
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.getExtendedAttributes(a));
    }
}
