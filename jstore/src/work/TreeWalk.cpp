#include "work/TreeWalk.h"

#include <fmt/format.h>

#include <utility>

#include "base/Problem.h"
#include "process/Interrupt.h"
#include "work/ReportFailure.h"

namespace jstore {

using foundation::storage::provider::EntryType;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::MaxFolderDepth;

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
    // A back end may have loops that it does not report as links.
    if (folder.depth > MaxFolderDepth) {
        throw refusal(folder.location, ErrorCode::InvalidLocation,
                      fmt::format("it lies more than {} folders deep", MaxFolderDepth));
    }
    std::vector<Entry> entries = entriesOf(*m_provider, folder);
    enter(folder, entries);
    m_path.push_back({folder, std::move(entries)});
}

/// Takes the next entry of the innermost folder, or leaves the folder if it has none left.
void TreeWalk::step() {
    Level& level = m_path.back();
    if (level.next < level.entries.size()) {
        const Entry entry = std::move(level.entries[level.next++]);
        attempt(entry.location, [&] { take(entry); });
        return;
    }
    const Entry folder = std::move(level.folder);
    m_path.pop_back();
    attempt(folder.location, [&] { leave(folder); });
}

void TreeWalk::take(const Entry& entry) {
    visit(entry);
    if (!entry.isFolder()) {
        return;
    }
    const NodeInfo info = nodeInfoOf(*m_provider, entry.location.iri());
    if (info.link) {
        passLink(entry);
        return;
    }
    approach(entry, info);
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
