#include <condition_variable>
#include <mutex>
#include <utility>

#include "changes/Watcher.h"
#include "fl/i18n/text.h"
#include "foundation/storage/provider/IProvider.h"
#include "storage/javaprovider/EntryPoints.h"
#include "storage/jvm/EmbeddedJVM.h"

namespace jstore::test {

using namespace foundation::storage::provider;
using foundation::storage::events::Kind;
using storage::jvm::EmbeddedJVM;

namespace {

std::shared_ptr<EmbeddedJVM> virtualMachine() {
    storage::jvm::EmbeddedJVMOptions options;
    options.classPath = {CHANGES_CONTRACT_JAR, CHANGES_BACKENDS_JAR};
    static const auto jvm = EmbeddedJVM::start(options);
    return jvm;
}

StorageIRI locationOf(const std::filesystem::path& folder) {
    return StorageIRI(u"java://" + fl::i18n::to_ustring(folder.string()));
}

class LibraryWatcher final : public Watcher {
public:
    explicit LibraryWatcher(const std::filesystem::path& folder)
        : m_folder(locationOf(folder)),
          m_provider(
              storage::javaprovider::buildProvider(virtualMachine(), "com/corvallen/storage/backend/nio/NioProvider")) {
        m_provider->startChangeNotification(
            m_folder, [this](const Kind& kind, const StorageIRI& /*watched*/, const StorageIRI& changed,
                             const EntryType& type, const boost::property_tree::ptree& /*details*/) {
                receive(kind, changed, type == EntryType::Folder);
            });
    }

    /// The provider goes first: once it is gone, it reports nothing more.
    ~LibraryWatcher() override {
        release();
        m_provider.reset();
    }

    std::vector<Change> take(std::chrono::milliseconds atMost) override {
        std::unique_lock lock(m_mutex);
        m_wake.wait_for(lock, atMost, [this] { return !m_changes.empty(); });
        return std::exchange(m_changes, {});
    }

    void hold() override {
        const std::lock_guard lock(m_mutex);
        m_held = true;
    }
    void release() override {
        const std::lock_guard lock(m_mutex);
        m_held = false;
        m_wake.notify_all();
    }

private:
    void receive(const Kind& kind, const StorageIRI& changed, bool isFolder) {
        const auto now = std::chrono::steady_clock::now();
        std::unique_lock lock(m_mutex);
        m_changes.push_back({kind, pathBelow(m_folder, changed), isFolder, now});
        m_wake.notify_all();
        m_wake.wait(lock, [this] { return !m_held; });
    }

    StorageIRI m_folder;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::vector<Change> m_changes;
    bool m_held = false;
    std::unique_ptr<IProvider> m_provider;
};

}  // namespace

std::unique_ptr<Watcher> watchByLibrary(const std::filesystem::path& folder) {
    return std::make_unique<LibraryWatcher>(folder);
}

}  // namespace jstore::test
