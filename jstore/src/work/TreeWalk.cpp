#include "work/TreeWalk.h"

#include <utility>

#include "base/Problem.h"
#include "process/Interrupt.h"
#include "work/ReportFailure.h"

namespace jstore {

using foundation::storage::provider::EntryType;
using foundation::storage::provider::ErrorCode;

namespace {

/// A back end may know loops that it does not tell of.
constexpr std::size_t MaxDepth = 2048;

}  // namespace

ExitCode TreeWalk::run(const Location& folder) {
    m_failed = false;
    m_path.clear();
    open({folder, folder.iri().normalized().getName(), EntryType::Folder});
    while (m_path.size() > 1 || m_path.front().next < m_path.front().entries.size()) {
        stopIfInterrupted();
        step();
    }
    leave(m_path.front().folder);
    return m_failed ? ExitCode::SomeFailed : ExitCode::Done;
}

void TreeWalk::open(const Entry& folder) {
    if (folder.depth > MaxDepth) {
        throw refusal(folder.location, ErrorCode::InvalidLocation, "it lies more than 2048 folders deep");
    }
    auto entries = entriesOf(*m_provider, folder);
    enter(folder, entries);
    m_path.push_back({folder, std::move(entries)});
}

/// Takes the next entry of the innermost folder, or leaves the folder when it has none left.
void TreeWalk::step() {
    auto& level = m_path.back();
    if (level.next < level.entries.size()) {
        const auto entry = std::move(level.entries[level.next++]);
        attempt(entry.location, [&] { take(entry); });
        return;
    }
    const auto folder = std::move(level.folder);
    m_path.pop_back();
    attempt(folder.location, [&] { leave(folder); });
}

void TreeWalk::take(const Entry& entry) {
    visit(entry);
    if (!entry.isFolder()) {
        return;
    }
    const auto facts = factsOf(*m_provider, entry.location.iri());
    if (facts.link) {
        passLink(entry);
        return;
    }
    approach(entry, facts);
    open(entry);
}

template <class Action>
void TreeWalk::attempt(const Location& location, const Action& action) {
    try {
        action();
    } catch (...) {
        static_cast<void>(reportFailure(*m_context, location));
        m_failed = true;
    }
}

}  // namespace jstore
