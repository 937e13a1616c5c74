package com.corvallen.storage.backend.nio;

import com.corvallen.storage.provider.ErrorCode;
import com.corvallen.storage.provider.StorageURI;
import java.nio.file.Files;
import java.nio.file.attribute.PosixFilePermissions;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Assumptions;
import org.junit.jupiter.api.BeforeEach;
import org.junit.jupiter.api.Test;

/**
 * A folder that is not writable. Root can write anywhere, so {@link ReadOnlyArchiveTest} covers these codes for root.
 */
class PermissionsTest extends NioTestCase {
    PermissionsTest() {
        super(NioStorage::ofFolder);
    }

    @BeforeEach
    void protect() throws Exception {
        folder("protected");
        file("x", "protected", "file");
        folder("protected", "folder");
        setPermissions("r-xr-xr-x");
        Assumptions.assumeFalse(Files.isWritable(path("protected")), "permissions do not stop this user");
    }

    @AfterEach
    void unprotect() throws Exception {
        setPermissions("rwxr-xr-x");
    }

    private void setPermissions(String permissions) throws Exception {
        Files.setPosixFilePermissions(path("protected"), PosixFilePermissions.fromString(permissions));
    }

    @Test
    void everyChangeIsDenied() throws Exception {
        StorageURI file = at("protected", "file");
        StorageURI folder = at("protected", "folder");
        StorageURI fresh = at("protected", "new");
        assertFails(ErrorCode.ACCESS_DENIED, fresh, () -> provider.createFile(fresh));
        assertFails(ErrorCode.ACCESS_DENIED, fresh, () -> provider.createFolder(fresh));
        assertFails(ErrorCode.ACCESS_DENIED, file, () -> provider.removeFile(file));
        assertFails(ErrorCode.ACCESS_DENIED, folder, () -> provider.removeFolder(folder));
        assertFails(ErrorCode.ACCESS_DENIED, folder, () -> provider.removeFolderRecursively(folder));
        assertFails(ErrorCode.ACCESS_DENIED, file, () -> provider.moveFile(file, at("stolen"), true));
        assertFails(ErrorCode.ACCESS_DENIED, folder, () -> provider.moveFolder(folder, at("stolen"), true));
        assertFile("x", file);
        assertFolder(folder);
    }
}
