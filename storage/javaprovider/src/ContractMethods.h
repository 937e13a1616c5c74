#pragma once

#include <array>

namespace storage::javaprovider {

/// One method of the Java contract.
struct ContractMethod {
    const char* name;
    const char* signature;
};

#define JAVAPROVIDER_URI "Lcom/corvallen/storage/provider/StorageURI;"

/// The methods that a Java provider must have, in the order in which they are resolved.
inline constexpr std::array<ContractMethod, 22> ContractMethods = {{
    {"fileExists", "(" JAVAPROVIDER_URI ")Z"},
    {"folderExists", "(" JAVAPROVIDER_URI ")Z"},
    {"createFile", "(" JAVAPROVIDER_URI ")V"},
    {"createFolder", "(" JAVAPROVIDER_URI ")V"},
    {"removeFile", "(" JAVAPROVIDER_URI ")V"},
    {"removeFolder", "(" JAVAPROVIDER_URI ")V"},
    {"removeFolderRecursively", "(" JAVAPROVIDER_URI ")V"},
    {"hasFeature", "(Lcom/corvallen/storage/provider/ExtendedFeature;)Z"},
    {"moveFile", "(" JAVAPROVIDER_URI JAVAPROVIDER_URI "Z)V"},
    {"moveFolder", "(" JAVAPROVIDER_URI JAVAPROVIDER_URI "Z)V"},
    {"getFileAttributes", "(" JAVAPROVIDER_URI ")Lcom/corvallen/storage/provider/FileAttributes;"},
    {"getFolderAttributes", "(" JAVAPROVIDER_URI ")Lcom/corvallen/storage/provider/FolderAttributes;"},
    {"setLastModified", "(" JAVAPROVIDER_URI "J)V"},
    {"listFolder", "(" JAVAPROVIDER_URI ")[Lcom/corvallen/storage/provider/FolderListEntry;"},
    {"getChannel", "(" JAVAPROVIDER_URI "ZZZ)Lcom/corvallen/storage/provider/ProviderChannel;"},
    {"getReadOnlyChannel", "(" JAVAPROVIDER_URI ")Lcom/corvallen/storage/provider/ProviderChannel;"},
    {"publishEventsFor", "(" JAVAPROVIDER_URI "Lcom/corvallen/storage/provider/EventPublisher;)V"},
    {"stopPublishingEventsFor", "(" JAVAPROVIDER_URI ")V"},
    {"dispose", "()V"},
    {"getExtendedAttributes", "(" JAVAPROVIDER_URI ")Lcom/corvallen/storage/provider/ExtendedAttributes;"},
    {"getProviderStorageInfo", "(" JAVAPROVIDER_URI ")Lcom/corvallen/storage/provider/ProviderStorageInfo;"},
    {"configure", "(Ljava/util/HashMap;)V"},
}};

#undef JAVAPROVIDER_URI

}  // namespace storage::javaprovider
