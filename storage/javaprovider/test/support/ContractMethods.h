#pragma once

#include <array>
#include <ostream>
#include <string>

namespace storage::javaprovider::test {

/// One method that a Java back end must have.
struct ContractMethod {
    const char* name;
    const char* signature;

    /// "createFile(Lcom/corvallen/storage/provider/StorageURI;)V", as calls of it are recorded.
    [[nodiscard]] std::string text() const { return std::string(name) + signature; }
};

inline void PrintTo(const ContractMethod& method, std::ostream* out) { *out << method.name; }

/// All of them, in the order in which they are looked up. Written a second time, apart from the library's own table, so
/// that a mistake there is found.
inline constexpr std::array<ContractMethod, 22> ContractMethods{{
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
