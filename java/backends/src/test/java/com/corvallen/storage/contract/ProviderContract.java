package com.corvallen.storage.contract;

import org.junit.jupiter.api.DisplayName;
import org.junit.jupiter.api.Nested;

/**
 * The test cases of all operations. A back end's test extends this class, has a name that ends in {@code Test}, and
 * opens storages:
 *
 * <pre>{@code
 * class MyProviderTest extends ProviderContract {
 *     protected StorageUnderTest open() { ... }
 * }
 * }</pre>
 */
public abstract class ProviderContract {
    /** Opens a storage that no other test uses. Called before each case. */
    protected abstract StorageUnderTest open() throws Exception;

    @Nested
    @DisplayName("fileExists")
    class FileExists extends FileExistsContract {
        FileExists() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("folderExists")
    class FolderExists extends FolderExistsContract {
        FolderExists() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("createFile")
    class CreateFile extends CreateFileContract {
        CreateFile() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("createFolder")
    class CreateFolder extends CreateFolderContract {
        CreateFolder() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("removeFile")
    class RemoveFile extends RemoveFileContract {
        RemoveFile() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("removeFolder")
    class RemoveFolder extends RemoveFolderContract {
        RemoveFolder() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("removeFolderRecursively")
    class RemoveFolderRecursively extends RemoveFolderRecursivelyContract {
        RemoveFolderRecursively() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("moveFile")
    class MoveFile extends MoveFileContract {
        MoveFile() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("moveFolder")
    class MoveFolder extends MoveFolderContract {
        MoveFolder() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("getFileAttributes")
    class GetFileAttributes extends GetFileAttributesContract {
        GetFileAttributes() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("getFolderAttributes")
    class GetFolderAttributes extends GetFolderAttributesContract {
        GetFolderAttributes() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("setLastModified")
    class SetLastModified extends SetLastModifiedContract {
        SetLastModified() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("listFolder")
    class ListFolder extends ListFolderContract {
        ListFolder() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("getChannel")
    class GetChannel extends GetChannelContract {
        GetChannel() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("getReadOnlyChannel")
    class GetReadOnlyChannel extends GetReadOnlyChannelContract {
        GetReadOnlyChannel() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("channel")
    class Channel extends ChannelContract {
        Channel() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("getExtendedAttributes")
    class GetExtendedAttributes extends GetExtendedAttributesContract {
        GetExtendedAttributes() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("getProviderStorageInfo")
    class GetProviderStorageInfo extends GetProviderStorageInfoContract {
        GetProviderStorageInfo() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("publishEventsFor")
    class PublishEvents extends PublishEventsContract {
        PublishEvents() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("location")
    class Location extends LocationContract {
        Location() {
            super(ProviderContract.this::open);
        }
    }

    @Nested
    @DisplayName("dispose")
    class Dispose extends DisposeContract {
        Dispose() {
            super(ProviderContract.this::open);
        }
    }
}
