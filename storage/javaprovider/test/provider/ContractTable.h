#pragma once

#include <array>
#include <ostream>

namespace storage::javaprovider::test {

struct ContractRow {
    const char* name;
    const char* signature;

    friend void PrintTo(const ContractRow& row, std::ostream* out) { *out << row.name << row.signature; }
};

/// The methods of the Java contract in the order in which a provider asks for them. Written out by hand, apart from
/// the library's own table, so that a slip in one of the two shows.
inline constexpr std::array<ContractRow, 22> Contract = {{
    {"fileExists", "(Lcom/corvallen/storage/provider/StorageURI;)Z"},
    {"folderExists", "(Lcom/corvallen/storage/provider/StorageURI;)Z"},
    {"createFile", "(Lcom/corvallen/storage/provider/StorageURI;)V"},
    {"createFolder", "(Lcom/corvallen/storage/provider/StorageURI;)V"},
    {"removeFile", "(Lcom/corvallen/storage/provider/StorageURI;)V"},
    {"removeFolder", "(Lcom/corvallen/storage/provider/StorageURI;)V"},
    {"removeFolderRecursively", "(Lcom/corvallen/storage/provider/StorageURI;)V"},
    {"hasFeature", "(Lcom/corvallen/storage/provider/ExtendedFeature;)Z"},
    {"moveFile", "(Lcom/corvallen/storage/provider/StorageURI;Lcom/corvallen/storage/provider/StorageURI;Z)V"},
    {"moveFolder", "(Lcom/corvallen/storage/provider/StorageURI;Lcom/corvallen/storage/provider/StorageURI;Z)V"},
    {"getFileAttributes",
     "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/FileAttributes;"},
    {"getFolderAttributes",
     "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/FolderAttributes;"},
    {"setLastModified", "(Lcom/corvallen/storage/provider/StorageURI;J)V"},
    {"listFolder", "(Lcom/corvallen/storage/provider/StorageURI;)[Lcom/corvallen/storage/provider/FolderListEntry;"},
    {"getChannel", "(Lcom/corvallen/storage/provider/StorageURI;ZZZ)Lcom/corvallen/storage/provider/ProviderChannel;"},
    {"getReadOnlyChannel",
     "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/ProviderChannel;"},
    {"publishEventsFor",
     "(Lcom/corvallen/storage/provider/StorageURI;Lcom/corvallen/storage/provider/EventPublisher;)V"},
    {"stopPublishingEventsFor", "(Lcom/corvallen/storage/provider/StorageURI;)V"},
    {"dispose", "()V"},
    {"getExtendedAttributes",
     "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/ExtendedAttributes;"},
    {"getProviderStorageInfo",
     "(Lcom/corvallen/storage/provider/StorageURI;)Lcom/corvallen/storage/provider/ProviderStorageInfo;"},
    {"configure", "(Ljava/util/HashMap;)V"},
}};

/// The four classes of the contract that a provider holds, in the order in which it loads them, with dots.
inline constexpr std::array<const char*, 4> HeldClasses = {
    "com.corvallen.storage.provider.StorageURI",
    "com.corvallen.storage.provider.FolderListEntry",
    "com.corvallen.storage.provider.NativePublisher",
    "com.corvallen.storage.provider.ExtendedFeature",
};

}  // namespace storage::javaprovider::test
