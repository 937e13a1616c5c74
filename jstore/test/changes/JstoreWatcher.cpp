#include <array>
#include <csignal>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "changes/Watcher.h"
#include "fl/i18n/text.h"
#include "support/Jstore.h"

namespace jstore::test {

using foundation::storage::events::Kind;
using foundation::storage::provider::StorageIRI;

namespace {

constexpr std::array<std::pair<std::string_view, Kind>, 5> Kinds{{{"SelfModified", Kind::SelfModified},
                                                                  {"SelfRemoved", Kind::SelfRemoved},
                                                                  {"ChildAdded", Kind::ChildAdded},
                                                                  {"ChildModified", Kind::ChildModified},
                                                                  {"ChildRemoved", Kind::ChildRemoved}}};

Kind kindOf(const nlohmann::json& object) {
    for (const auto& [word, kind] : Kinds) {
        if (object.value("event", "") == word) {
            return kind;
        }
    }
    throw std::runtime_error("jstore watch said " + object.dump());
}

StorageIRI iriOf(const nlohmann::json& object, const char* field) {
    return StorageIRI(fl::i18n::to_ustring(object.at(field).get<std::string>()));
}

class JstoreWatcher final : public Watcher {
public:
    explicit JstoreWatcher(const std::filesystem::path& folder)
        : m_jstore({"--json", "watch", "-r", "java://" + folder.string()}) {
        m_jstore.start();
        if (!m_jstore.readUntil([this](const Outcome& outcome) { return hasLine(outcome); }) ||
            nextObject().value("event", "") != "Watching") {
            throw std::runtime_error("jstore watch does not begin: " + m_jstore.soFar().out + m_jstore.soFar().err);
        }
    }
    ~JstoreWatcher() override { release(); }

    std::vector<Change> take(std::chrono::milliseconds atMost) override {
        std::vector<Change> changes;
        static_cast<void>(m_jstore.readUntil([this](const Outcome& outcome) { return hasLine(outcome); }, atMost));
        while (hasLine(m_jstore.soFar())) {
            const auto object = nextObject();
            changes.push_back({kindOf(object), pathBelow(iriOf(object, "watched"), iriOf(object, "location")),
                               object.at("type") == "folder", std::chrono::steady_clock::now()});
        }
        return changes;
    }

    void hold() override { ::kill(m_jstore.pid(), SIGSTOP); }
    void release() override { ::kill(m_jstore.pid(), SIGCONT); }

private:
    [[nodiscard]] bool hasLine(const Outcome& outcome) const {
        return outcome.out.find('\n', m_read) != std::string::npos;
    }

    nlohmann::json nextObject() {
        const auto& text = m_jstore.soFar().out;
        const auto end = text.find('\n', m_read);
        const auto line = std::string_view(text).substr(m_read, end - m_read);
        m_read = end + 1;
        return nlohmann::json::parse(line);
    }

    Jstore m_jstore;
    std::size_t m_read = 0;
};

}  // namespace

std::unique_ptr<Watcher> watchByJstore(const std::filesystem::path& folder) {
    return std::make_unique<JstoreWatcher>(folder);
}

}  // namespace jstore::test
