package com.corvallen.storage.contract;

import static org.junit.jupiter.api.Assertions.assertEquals;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import org.junit.jupiter.params.ParameterizedTest;
import org.junit.jupiter.params.provider.ValueSource;

/** How every operation refuses a text that is not a location. */
public abstract class LocationContract extends OperationContract {
    protected LocationContract(StorageUnderTest.Opener opener) {
        super(opener);
    }

    @ParameterizedTest
    @ValueSource(
            strings = {
                "..", "a/../b", "%2e%2e", ".%2E/b", ".", "a/%2e", "a%2Fb", "..%2fb", "%2Fetc", "a%00", "%", "%4", "%zz",
                "%ff", "a?b", "a#b"
            })
    void everyOperationRefusesWhatIsNoLocation(String path) throws Exception {
        StorageURI bad = new StorageURI(storage.root().getText() + "/" + path);
        assertEveryOperationRefuses(bad);
    }

    @ParameterizedTest
    @ValueSource(strings = {"", "a", "/a", "java:/a"})
    void everyOperationRefusesTextWithoutScheme(String text) throws Exception {
        assertEveryOperationRefuses(new StorageURI(text));
    }

    private void assertEveryOperationRefuses(StorageURI bad) throws Exception {
        StorageURI file = file("x", "file");
        StorageURI folder = folder("folder");
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.fileExists(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.folderExists(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.createFile(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.createFolder(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.removeFile(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.removeFolder(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.removeFolderRecursively(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.moveFile(bad, at("b"), true));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.moveFile(file, bad, true));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.moveFolder(bad, at("b"), true));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.moveFolder(folder, bad, true));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.getFileAttributes(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.getFolderAttributes(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.setLastModified(bad, 0));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.listFolder(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.getChannel(bad, true, true, false));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.getReadOnlyChannel(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.getExtendedAttributes(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.getProviderStorageInfo(bad));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.publishEventsFor(bad, new RecordingPublisher()));
        assertFails(ErrorCode.INVALID_LOCATION, bad, () -> provider.stopPublishingEventsFor(bad));
        assertFile("x", file);
        assertFolder(folder);
        assertEquals(2, storage.countEntries(at()));
    }
}
