// The operations that the framework calls; what they are made of is in InMemoryProvider.cpp.
#include "InMemoryProvider.h"

namespace foundation::test {

using namespace storage::provider;
using storage::events::Kind;

void InMemoryProvider::setExtendedAttributes(const StorageIRI& location, ExtendedAttributes attributes) {
    const std::lock_guard lock(m_mutex);
    require(location).attributes = std::move(attributes);
}

void InMemoryProvider::setReadOnly(const StorageIRI& location) {
    const std::lock_guard lock(m_mutex);
    require(location).content->writable = false;
}

int InMemoryProvider::openStreams(const StorageIRI& location) const {
    const std::lock_guard lock(m_mutex);
    InMemoryContent& content = *require(location, EntryType::File).content;
    const std::lock_guard contentLock(content.mutex);
    return content.openStreams;
}

std::string InMemoryProvider::bytesOf(const StorageIRI& location) const {
    const std::lock_guard lock(m_mutex);
    InMemoryContent& content = *require(location, EntryType::File).content;
    const std::lock_guard contentLock(content.mutex);
    return content.bytes;
}

void InMemoryProvider::doCreateFile(const StorageIRI& location) const {
    enter("createFile", location);
    {
        const std::lock_guard lock(m_mutex);
        create(location, EntryType::File);
    }
    announce(Kind::SelfModified, Kind::ChildAdded, location, EntryType::File);
}

void InMemoryProvider::doCreateFolder(const StorageIRI& location) const {
    enter("createFolder", location);
    {
        const std::lock_guard lock(m_mutex);
        create(location, EntryType::Folder);
    }
    announce(Kind::SelfModified, Kind::ChildAdded, location, EntryType::Folder);
}

bool InMemoryProvider::doFileExists(const StorageIRI& location) const {
    enter("fileExists", location);
    const std::lock_guard lock(m_mutex);
    const Node* const node = find(location);
    return node != nullptr && node->type == EntryType::File;
}

bool InMemoryProvider::doFolderExists(const StorageIRI& location) const {
    enter("folderExists", location);
    const std::lock_guard lock(m_mutex);
    const Node* const node = find(location);
    return node != nullptr && node->type == EntryType::Folder;
}

void InMemoryProvider::doRemoveFile(const StorageIRI& location) const {
    enter("removeFile", location);
    {
        const std::lock_guard lock(m_mutex);
        requireRemovable(location, require(location, EntryType::File));
        removeTree(location);
    }
    announce(Kind::SelfRemoved, Kind::ChildRemoved, location, EntryType::File);
}

void InMemoryProvider::doRemoveFolder(const StorageIRI& location) const {
    enter("removeFolder", location);
    {
        const std::lock_guard lock(m_mutex);
        requireRemovable(location, require(location, EntryType::Folder));
        if (!below(location).empty()) {
            throw Exception(ErrorCode::FolderNotEmpty, location);
        }
        removeTree(location);
    }
    announce(Kind::SelfRemoved, Kind::ChildRemoved, location, EntryType::Folder);
}

void InMemoryProvider::doRemoveFolderRecursive(const StorageIRI& location) const {
    enter("removeFolderRecursive", location);
    {
        const std::lock_guard lock(m_mutex);
        requireRemovable(location, require(location, EntryType::Folder));
        removeTree(location);
    }
    announce(Kind::SelfRemoved, Kind::ChildRemoved, location, EntryType::Folder);
}

void InMemoryProvider::doMoveFile(const StorageIRI& source, const StorageIRI& destination,
                                  const ReplacementPolicy& policy) const {
    enter("moveFile", source);
    {
        const std::lock_guard lock(m_mutex);
        if (!move(source, destination, policy, EntryType::File)) {
            return;
        }
    }
    announce(Kind::SelfRemoved, Kind::ChildRemoved, source, EntryType::File);
    announce(Kind::SelfModified, Kind::ChildAdded, destination, EntryType::File);
}

void InMemoryProvider::doMoveFolder(const StorageIRI& source, const StorageIRI& destination,
                                    const ReplacementPolicy& policy) const {
    enter("moveFolder", source);
    {
        const std::lock_guard lock(m_mutex);
        if (!move(source, destination, policy, EntryType::Folder)) {
            return;
        }
    }
    announce(Kind::SelfRemoved, Kind::ChildRemoved, source, EntryType::Folder);
    announce(Kind::SelfModified, Kind::ChildAdded, destination, EntryType::Folder);
}

FileAttributes InMemoryProvider::doGetFileAttributes(const StorageIRI& location) const {
    enter("getFileAttributes", location);
    const std::lock_guard lock(m_mutex);
    InMemoryContent& content = *require(location, EntryType::File).content;
    const std::lock_guard contentLock(content.mutex);
    return {content.bytes.size(), content.lastModified, content.writable};
}

FolderAttributes InMemoryProvider::doGetFolderAttributes(const StorageIRI& location) const {
    enter("getFolderAttributes", location);
    const std::lock_guard lock(m_mutex);
    InMemoryContent& content = *require(location, EntryType::Folder).content;
    const std::lock_guard contentLock(content.mutex);
    return {content.lastModified, content.writable};
}

std::unique_ptr<ByteStream> InMemoryProvider::doOpenByteStream(const StorageIRI& location,
                                                               const ByteStreamOpenOptions& options) const {
    enter("openByteStream", location);
    const std::lock_guard lock(m_mutex);
    const bool missing = find(location) == nullptr;
    Node& node = missing && options.creation == ByteStreamOpenOptions::Creation::CreateIfMissing
                     ? create(location, EntryType::File)
                     : require(location, EntryType::File);
    if (!node.content->writable) {
        throw Exception(ErrorCode::AccessDenied, location);
    }
    auto stream = std::make_unique<InMemoryStream>(location, node.content, options.sharing, /*writable=*/true);
    if (options.content == ByteStreamOpenOptions::Content::Truncate) {
        const std::lock_guard contentLock(node.content->mutex);
        node.content->bytes.clear();
    }
    return stream;
}

std::unique_ptr<ByteStream> InMemoryProvider::doOpenReadOnlyByteStream(const StorageIRI& location) const {
    enter("openReadOnlyByteStream", location);
    const std::lock_guard lock(m_mutex);
    return std::make_unique<InMemoryStream>(location, require(location, EntryType::File).content,
                                            InMemoryStream::Sharing::Shared, /*writable=*/false);
}

std::unique_ptr<IFolderEntryIterator> InMemoryProvider::doListAll(const StorageIRI& folder) const {
    enter("listAll", folder);
    const std::lock_guard lock(m_mutex);
    return list(folder, boost::logic::indeterminate);
}

std::unique_ptr<IFolderEntryIterator> InMemoryProvider::doListFiles(const StorageIRI& folder) const {
    enter("listFiles", folder);
    const std::lock_guard lock(m_mutex);
    return list(folder, true);
}

std::unique_ptr<IFolderEntryIterator> InMemoryProvider::doListFolders(const StorageIRI& folder) const {
    enter("listFolders", folder);
    const std::lock_guard lock(m_mutex);
    return list(folder, false);
}

void InMemoryProvider::doSetLastModified(const StorageIRI& location,
                                         const boost::posix_time::ptime& lastModified) const {
    enter("setLastModified", location);
    EntryType type;
    {
        const std::lock_guard lock(m_mutex);
        Node& node = require(location);
        const std::lock_guard contentLock(node.content->mutex);
        node.content->lastModified = lastModified;
        type = node.type;
    }
    announce(Kind::SelfModified, Kind::ChildModified, location, type);
}

void InMemoryProvider::doStartChangeNotification(const StorageIRI& location, const ChangeCallback& callback,
                                                 const void*, std::int32_t) const {
    enter("startChangeNotification", location);
    const std::lock_guard lock(m_mutex);
    m_watchers[location.normalized().text()] = callback;
}

void InMemoryProvider::doStartChangeNotificationOnParent(const StorageIRI& location, const ChangeCallback& callback,
                                                         const void* context) const {
    doStartChangeNotification(location.getParent(), callback, context, 1);
}

void InMemoryProvider::doStopChangeNotification(const StorageIRI& location) const {
    enter("stopChangeNotification", location);
    const std::lock_guard lock(m_mutex);
    m_watchers.erase(location.normalized().text());
}

bool InMemoryProvider::doHasFeature(const ExtendedFeature& feature) const { return m_features.contains(feature); }

ExtendedAttributes InMemoryProvider::doGetExtendedAttributes(const StorageIRI& location) const {
    enter("getExtendedAttributes", location);
    const std::lock_guard lock(m_mutex);
    return require(location).attributes;
}

ProviderStorageInfo InMemoryProvider::doGetProviderStorageInfo(const StorageIRI& location) const {
    enter("getProviderStorageInfo", location);
    const std::lock_guard lock(m_mutex);
    (void)require(location);
    std::uint64_t occupied = 0;
    for (const auto& [key, node] : m_nodes) {
        const std::lock_guard contentLock(node.content->mutex);
        occupied += node.content->bytes.size();
    }
    ProviderStorageInfo info;
    info.withSpaceOccupied(occupied);
    if (m_capacity) {
        info.withStorageCapacity(*m_capacity);
    }
    return info;
}

}  // namespace foundation::test
