#include "InMemoryProvider.h"

#include <boost/date_time/posix_time/posix_time.hpp>

#include <utility>

#include "foundation/storage/provider/FolderEntryIteratorRangeAdapter.h"

namespace foundation::test {

using namespace storage::provider;
using storage::events::Kind;

namespace {

[[noreturn]] void fail(ErrorCode code, const StorageIRI& location) { throw Exception(code, location); }

std::u16string prefixOf(const std::u16string& folder) { return folder.ends_with(u'/') ? folder : folder + u'/'; }

void requireWritable(const InMemoryContent& content, const StorageIRI& location) {
    if (!content.writable) {
        fail(ErrorCode::AccessDenied, location);
    }
}

}  // namespace

void InMemoryProvider::enter(std::string_view operation, const StorageIRI& location) const {
    if (m_hook) {
        m_hook(operation, location);
    }
}

InMemoryProvider::Node* InMemoryProvider::find(const StorageIRI& location) const {
    const StorageIRI normal = location.normalized();
    if (normal.isRoot()) {
        return &m_nodes[normal.text()];
    }
    const auto found = m_nodes.find(normal.text());
    return found == m_nodes.end() ? nullptr : &found->second;
}

InMemoryProvider::Node& InMemoryProvider::require(const StorageIRI& location) const {
    Node* const node = find(location);
    if (node == nullptr) {
        fail(ErrorCode::NotFound, location);
    }
    return *node;
}

InMemoryProvider::Node& InMemoryProvider::require(const StorageIRI& location, EntryType type) const {
    Node& node = require(location);
    if (node.type != type) {
        fail(type == EntryType::File ? ErrorCode::NotAFile : ErrorCode::NotAFolder, location);
    }
    return node;
}

InMemoryProvider::Node& InMemoryProvider::requireParent(const StorageIRI& location) const {
    Node* const parent = find(location.getParent());
    if (parent == nullptr) {
        fail(ErrorCode::NotFound, location);
    }
    if (parent->type != EntryType::Folder) {
        fail(ErrorCode::NotAFolder, location);
    }
    requireWritable(*parent->content, location);
    return *parent;
}

InMemoryProvider::Node& InMemoryProvider::create(const StorageIRI& location, EntryType type) const {
    if (find(location) != nullptr) {
        fail(ErrorCode::AlreadyExists, location);
    }
    requireParent(location);
    Node& node = m_nodes[location.normalized().text()];
    node.type = type;
    node.content->lastModified = boost::posix_time::microsec_clock::universal_time();
    return node;
}

std::vector<InMemoryProvider::Key> InMemoryProvider::below(const StorageIRI& folder) const {
    const Key prefix = prefixOf(folder.normalized().text());
    std::vector<Key> keys;
    for (auto node = m_nodes.upper_bound(prefix); node != m_nodes.end() && node->first.starts_with(prefix); ++node) {
        keys.push_back(node->first);
    }
    return keys;
}

void InMemoryProvider::removeTree(const StorageIRI& location) const {
    for (const Key& key : below(location)) {
        m_nodes.erase(key);
    }
    m_nodes.erase(location.normalized().text());
}

void InMemoryProvider::requireRemovable(const StorageIRI& location, const Node& node) const {
    if (location.isRoot()) {
        fail(ErrorCode::AccessDenied, location);
    }
    requireParent(location);
    requireWritable(*node.content, location);
}

void InMemoryProvider::makeRoom(const StorageIRI& destination, ReplacementPolicy policy) const {
    Node* const present = find(destination);
    if (present == nullptr) {
        return;
    }
    const bool keptFolder = policy == ReplacementPolicy::ReplaceExistingFile && present->type == EntryType::Folder;
    if (policy == ReplacementPolicy::KeepExisting || keptFolder) {
        fail(ErrorCode::AlreadyExists, destination);
    }
    requireRemovable(destination, *present);
    removeTree(destination);
}

bool InMemoryProvider::move(const StorageIRI& source, const StorageIRI& destination, ReplacementPolicy policy,
                            EntryType type) const {
    requireRemovable(source, require(source, type));
    const Key from = source.normalized().text();
    const Key to = destination.normalized().text();
    if (to.starts_with(prefixOf(from))) {
        fail(ErrorCode::InvalidLocation, destination);
    }
    requireParent(destination);
    if (from == to) {
        return false;
    }
    const Node* const present = find(destination);
    const bool replaces = type == EntryType::File && present != nullptr && present->type == EntryType::File;
    const ExtendedAttributes kept = replaces ? present->attributes : require(source).attributes;
    makeRoom(destination, policy);
    for (const Key& key : below(source)) {
        auto node = m_nodes.extract(key);
        node.key() = to + key.substr(from.size());
        m_nodes.insert(std::move(node));
    }
    auto node = m_nodes.extract(from);
    node.key() = to;
    node.mapped().attributes = kept;
    m_nodes.insert(std::move(node));
    return true;
}

void InMemoryProvider::announce(Kind self, Kind child, const StorageIRI& location, EntryType type) const {
    const auto send = [&](const StorageIRI& watched, Kind kind) {
        std::unique_lock lock(m_mutex);
        const auto watcher = m_watchers.find(watched.normalized().text());
        if (watcher == m_watchers.end()) {
            return;
        }
        const ChangeCallback callback = watcher->second;
        lock.unlock();
        callback(kind, watched, location, type, {});
    };
    send(location, self);
    send(location.getParent(), child);
}

std::unique_ptr<IFolderEntryIterator> InMemoryProvider::list(const StorageIRI& folder,
                                                             const boost::logic::tribool& filesWanted) const {
    require(folder, EntryType::Folder);
    const Key prefix = prefixOf(folder.normalized().text());
    std::vector<FolderEntry> entries;
    for (const Key& key : below(folder)) {
        const EntryType type = m_nodes.at(key).type;
        const bool wanted =
            boost::logic::indeterminate(filesWanted) || static_cast<bool>(filesWanted == (type == EntryType::File));
        if (wanted && key.find(u'/', prefix.size()) == Key::npos) {
            entries.emplace_back(StorageIRI(key).getName(), type);
        }
    }
    using Adapter = FolderEntryIteratorRangeAdapter<std::vector<FolderEntry>>;
    return std::make_unique<IClonableFolderEntryIterator<Adapter>>(std::move(entries),
                                                                   [](FolderEntry entry) { return entry; });
}

}  // namespace foundation::test
