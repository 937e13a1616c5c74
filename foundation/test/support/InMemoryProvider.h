#pragma once

#include <boost/logic/tribool.hpp>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "InMemoryStream.h"
#include "foundation/storage/provider/IConfigurableProvider.h"

namespace foundation::test {

/// A whole back end in memory. It overrides what every back end must and leaves the defaults to the framework.
///
/// Every root exists and is an empty folder at first. A file that replaces another takes over its attributes.
/// Operations that change something notify watchers of the location and of its parent; writing to a stream does not.
/// Safe to use from any thread.
class InMemoryProvider : public storage::provider::IConfigurableProvider {
public:
    using StorageIRI = storage::provider::StorageIRI;

    /// Called at the start of each operation with its name, such as "createFolder", and its first location, on the
    /// caller's thread and under no lock: it may use the provider, and an exception that it throws ends the operation.
    using Hook = std::function<void(std::string_view operation, const StorageIRI& location)>;

    /// Set before other threads use the provider.
    void setHook(Hook hook) { m_hook = std::move(hook); }

    void setFeature(storage::provider::ExtendedFeature feature) { m_features.insert(feature); }
    void setStorageCapacity(std::uint64_t bytes) { m_capacity = bytes; }
    void setExtendedAttributes(const StorageIRI& location, storage::provider::ExtendedAttributes attributes);
    /// Makes an existing file or folder refuse changes.
    void setReadOnly(const StorageIRI& location);

    [[nodiscard]] const boost::property_tree::ptree& settings() const noexcept { return m_settings; }
    /// How many streams on the file are not closed.
    [[nodiscard]] int openStreams(const StorageIRI& location) const;
    [[nodiscard]] std::string bytesOf(const StorageIRI& location) const;

protected:
    void doCreateFile(const StorageIRI& location) const override;
    void doCreateFolder(const StorageIRI& location) const override;
    bool doFileExists(const StorageIRI& location) const override;
    bool doFolderExists(const StorageIRI& location) const override;
    void doRemoveFile(const StorageIRI& location) const override;
    void doMoveFile(const StorageIRI& source, const StorageIRI& destination,
                    const storage::provider::ReplacementPolicy& policy) const override;
    void doRemoveFolder(const StorageIRI& location) const override;
    void doRemoveFolderRecursive(const StorageIRI& location) const override;
    void doMoveFolder(const StorageIRI& source, const StorageIRI& destination,
                      const storage::provider::ReplacementPolicy& policy) const override;
    storage::provider::FileAttributes doGetFileAttributes(const StorageIRI& location) const override;
    storage::provider::FolderAttributes doGetFolderAttributes(const StorageIRI& location) const override;
    std::unique_ptr<storage::provider::ByteStream> doOpenByteStream(
        const StorageIRI& location, const storage::provider::ByteStreamOpenOptions& options) const override;
    std::unique_ptr<storage::provider::ByteStream> doOpenReadOnlyByteStream(const StorageIRI& location) const override;
    std::unique_ptr<storage::provider::IFolderEntryIterator> doListAll(const StorageIRI& folder) const override;
    std::unique_ptr<storage::provider::IFolderEntryIterator> doListFiles(const StorageIRI& folder) const override;
    std::unique_ptr<storage::provider::IFolderEntryIterator> doListFolders(const StorageIRI& folder) const override;
    void doSetLastModified(const StorageIRI& location, const boost::posix_time::ptime& lastModified) const override;
    void doStartChangeNotification(const StorageIRI& location, const storage::provider::ChangeCallback& callback,
                                   const void* context, std::int32_t onParent) const override;
    void doStartChangeNotificationOnParent(const StorageIRI& location,
                                           const storage::provider::ChangeCallback& callback,
                                           const void* context) const override;
    void doStopChangeNotification(const StorageIRI& location) const override;
    bool doHasFeature(const storage::provider::ExtendedFeature& feature) const override;
    storage::provider::ExtendedAttributes doGetExtendedAttributes(const StorageIRI& location) const override;
    storage::provider::ProviderStorageInfo doGetProviderStorageInfo(const StorageIRI& location) const override;
    void doConfigure(const boost::property_tree::ptree& settings) override { m_settings = settings; }

private:
    using Key = std::u16string;

    struct Node {
        storage::provider::EntryType type = storage::provider::EntryType::Folder;
        std::shared_ptr<InMemoryContent> content = std::make_shared<InMemoryContent>();
        storage::provider::ExtendedAttributes attributes;
    };

    // Everything here but announce() and enter() is called with m_mutex held.
    void enter(std::string_view operation, const StorageIRI& location) const;
    Node* find(const StorageIRI& location) const;
    Node& require(const StorageIRI& location) const;
    Node& require(const StorageIRI& location, storage::provider::EntryType type) const;
    Node& requireParent(const StorageIRI& location) const;
    Node& create(const StorageIRI& location, storage::provider::EntryType type) const;
    std::vector<Key> below(const StorageIRI& folder) const;
    void removeTree(const StorageIRI& location) const;
    void requireRemovable(const StorageIRI& location, const Node& node) const;
    void makeRoom(const StorageIRI& destination, storage::provider::ReplacementPolicy policy) const;
    /// False if the two are the same, and nothing has happened.
    bool move(const StorageIRI& source, const StorageIRI& destination, storage::provider::ReplacementPolicy policy,
              storage::provider::EntryType type) const;
    std::unique_ptr<storage::provider::IFolderEntryIterator> list(const StorageIRI& folder,
                                                                  const boost::logic::tribool& filesWanted) const;
    void announce(storage::events::Kind self, storage::events::Kind child, const StorageIRI& location,
                  storage::provider::EntryType type) const;

    mutable std::mutex m_mutex;
    mutable std::map<Key, Node> m_nodes;
    mutable std::map<Key, storage::provider::ChangeCallback> m_watchers;
    Hook m_hook;
    std::set<storage::provider::ExtendedFeature> m_features;
    std::optional<std::uint64_t> m_capacity;
    boost::property_tree::ptree m_settings;
};

}  // namespace foundation::test
