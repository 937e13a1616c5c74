package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.ProviderChannel;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** The cases of {@code getChannel}. */
public abstract class GetChannelContract extends OperationContract {
    protected GetChannelContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    private ProviderChannel open(StorageURI location) throws Exception {
        return provider.getChannel(location, /* create= */ false, /* truncate= */ false, /* exclusive= */ false);
    }

    private ProviderChannel openExclusively(StorageURI location) throws Exception {
        return provider.getChannel(location, /* create= */ false, /* truncate= */ false, /* exclusive= */ true);
    }

    @Test
    void existingContentIsKept() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel channel = open(a)) {
            assertEquals(0, channel.position());
            assertEquals(5, channel.size());
            assertEquals("hello", ChannelText.read(channel));
        }
        assertFile("hello", a);
    }

    @Test
    void beginningIsOverwrittenAndTheRestStays() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel channel = open(a)) {
            ChannelText.write(channel, "HE");
        }
        assertFile("HEllo", a);
    }

    @Test
    void truncatedFileIsEmpty() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel channel = provider.getChannel(a, false, /* truncate= */ true, false)) {
            assertEquals(0, channel.size());
            ChannelText.write(channel, "x");
        }
        assertFile("x", a);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void missingFileIsCreated(boolean exclusive) throws Exception {
        StorageURI a = at("a");
        try (ProviderChannel channel = provider.getChannel(a, /* create= */ true, false, exclusive)) {
            assertFile("", a);
            ChannelText.write(channel, "x");
        }
        assertFile("x", a);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void existingFileIsNotCreatedAgain(boolean exclusive) throws Exception {
        StorageURI a = file("hello", "a");
        provider.getChannel(a, /* create= */ true, false, exclusive).close();
        assertFile("hello", a);
    }

    @Test
    void missingIsNotFoundUnlessCreated() throws Exception {
        StorageURI a = at("a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> open(a));
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.getChannel(a, false, true, true));
        assertMissing(a);
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void missingParentIsNotFound(boolean create) throws Exception {
        StorageURI a = at("missing", "a");
        assertFails(ErrorCode.NOT_FOUND, a, () -> provider.getChannel(a, create, true, false));
        assertMissing(at("missing"));
    }

    @ParameterizedTest
    @ValueSource(booleans = {false, true})
    void fileForAParentIsNotAFolder(boolean create) throws Exception {
        StorageURI parent = file("x", "parent");
        StorageURI a = at("parent", "a");
        assertFails(ErrorCode.NOT_A_FOLDER, a, () -> provider.getChannel(a, create, true, false));
        assertFile("x", parent);
    }

    @Test
    void folderIsNotAFile() throws Exception {
        StorageURI a = folder("a");
        StorageURI child = file("x", "a", "child");
        assertFails(ErrorCode.NOT_A_FILE, a, () -> open(a));
        assertFails(ErrorCode.NOT_A_FILE, a, () -> provider.getChannel(a, true, true, true));
        assertFails(ErrorCode.NOT_A_FILE, at(), () -> open(at()));
        assertFile("x", child);
    }

    @Test
    void exclusiveChannelIsAlone() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel channel = openExclusively(a)) {
            assertFails(ErrorCode.IN_USE, a, () -> openExclusively(a));
            assertFails(ErrorCode.IN_USE, a, () -> open(a));
            assertFails(ErrorCode.IN_USE, a, () -> provider.getChannel(a, true, /* truncate= */ true, false));
            assertFails(ErrorCode.IN_USE, a, () -> provider.getReadOnlyChannel(a));
            assertEquals("hello", ChannelText.read(channel));
        }
        open(a).close();
        assertFile("hello", a);
    }

    @Test
    void openFileIsNotOpenedExclusively() throws Exception {
        StorageURI a = file("hello", "a");
        try (ProviderChannel reader = provider.getReadOnlyChannel(a)) {
            assertFails(ErrorCode.IN_USE, a, () -> provider.getChannel(a, true, /* truncate= */ true, true));
            assertEquals("hello", ChannelText.read(reader));
        }
        try (ProviderChannel writer = open(a)) {
            assertFails(ErrorCode.IN_USE, a, () -> openExclusively(a));
            assertEquals("hello", ChannelText.read(writer));
        }
        openExclusively(a).close();
        assertFile("hello", a);
    }

    @Test
    void exclusiveChannelOfAnotherFileIsNoObstacle() throws Exception {
        StorageURI a = file("a", "a");
        StorageURI b = file("b", "b");
        try (ProviderChannel first = openExclusively(a);
                ProviderChannel second = openExclusively(b)) {
            assertEquals("a", ChannelText.read(first));
            assertEquals("b", ChannelText.read(second));
        }
    }

    @Test
    void oneOfManyOpensExclusively() throws Exception {
        StorageURI a = file("x", "a");
        ProviderChannel[] channels = new ProviderChannel[8];
        assertOneWinner(ErrorCode.IN_USE, atTheSameTime(8, number -> channels[number] = openExclusively(a)));
        for (ProviderChannel channel : channels) {
            if (channel != null) {
                channel.close();
            }
        }
        openExclusively(a).close();
    }

    @Test
    void failedOpeningLeavesTheFileFree() throws Exception {
        StorageURI a = file("x", "a");
        provider.removeFile(a);
        assertThrows(Exception.class, () -> openExclusively(a));
        provider.createFile(a);
        openExclusively(a).close();
    }

    @Test
    void writtenContentIsThereForWhoOpensNext() throws Exception {
        StorageURI a = at("a");
        for (int round = 0; round < 20; round++) {
            try (ProviderChannel channel = provider.getChannel(a, true, true, false)) {
                ChannelText.write(channel, "round " + round);
            }
            try (ProviderChannel channel = provider.getReadOnlyChannel(a)) {
                assertEquals("round " + round, ChannelText.read(channel));
            }
            assertEquals(("round " + round).length(), provider.getFileAttributes(a).getSize());
        }
    }
}
