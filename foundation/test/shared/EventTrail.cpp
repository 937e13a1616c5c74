#include "EventTrail.h"

#include <array>
#include <chrono>
#include <utility>

#include "fl/i18n/text.h"

namespace foundation::test {

namespace {

using storage::events::Kind;
using storage::provider::EntryType;
using storage::provider::StorageIRI;

std::string textOf(Kind kind, EntryType type, const StorageIRI& changed) {
    static constexpr std::array Kinds = {"SelfModified", "SelfRemoved", "ChildAdded", "ChildModified", "ChildRemoved"};
    return std::string(Kinds.at(static_cast<std::size_t>(kind))) + (type == EntryType::File ? " File " : " Folder ") +
           fl::i18n::to_string(changed.getName());
}

}  // namespace

storage::provider::ChangeCallback EventTrail::callback() {
    return [this](const Kind& kind, const StorageIRI&, const StorageIRI& changed, const EntryType& type, auto&&) {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(textOf(kind, type, changed));
        m_came.notify_all();
    };
}

std::vector<std::string> EventTrail::next(std::size_t count) {
    std::unique_lock lock(m_mutex);
    m_came.wait_for(lock, std::chrono::seconds(30), [&] { return m_events.size() >= count; });
    const auto end = m_events.begin() + static_cast<std::ptrdiff_t>(std::min(count, m_events.size()));
    std::vector<std::string> taken(m_events.begin(), end);
    m_events.erase(m_events.begin(), end);
    return taken;
}

std::vector<std::string> EventTrail::rest() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_events, {});
}

}  // namespace foundation::test
