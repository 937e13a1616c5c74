#include "verbs/TreeWalk.h"

#include "Interrupt.h"
#include "foundation/storage/provider/Exception.h"
#include "verbs/ReportFailure.h"

namespace jstore {

using foundation::storage::provider::EntryType;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;

namespace {

/// A back end may know loops that it does not tell of.
constexpr std::size_t MaxDepth = 2048;

}  // namespace

ExitCode TreeWalk::run(const Location& folder) {
    m_failed = false;
    walk({folder, folder.iri().normalized().getName(), EntryType::Folder});
    return m_failed ? ExitCode::SomeFailed : ExitCode::Done;
}

void TreeWalk::walk(const Entry& folder) {
    if (folder.depth > MaxDepth) {
        throw Exception(ErrorCode::InvalidLocation, folder.location.iri());
    }
    const auto entries = entriesOf(*m_provider, folder);
    enter(folder, entries);
    for (const auto& entry : entries) {
        attempt(entry);
    }
    leave(folder);
}

void TreeWalk::attempt(const Entry& entry) {
    try {
        stopIfInterrupted();
        visit(entry);
        if (!entry.isFolder()) {
            return;
        }
        isLink(*m_provider, entry.location) ? passLink(entry) : walk(entry);
    } catch (...) {
        static_cast<void>(reportFailure(*m_context, entry.location));
        m_failed = true;
    }
}

}  // namespace jstore
