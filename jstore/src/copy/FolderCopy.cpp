#include "copy/FolderCopy.h"

#include <utility>

#include "base/Problem.h"
#include "work/FullStorage.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;

FolderCopy::FolderCopy(Context& context, const Location& target, bool replace, MadeHere& made)
    : TreeWalk(context), m_made(made), m_targets{{target, replace}} {}

void FolderCopy::enter(const Entry& folder, const std::vector<Entry>& /*entries*/) {
    auto target = unlessFull(context(), folder.location, [&] { return opened(targetOf(folder)); });
    m_targets.resize(folder.depth, m_targets.front());
    m_targets.push_back(std::move(target));
}

void FolderCopy::visit(const Entry& entry) {
    if (entry.isFolder()) {
        return;
    }
    m_bytes += unlessFull(context(), entry.location, [&] {
        return copyOneFile(provider(), entry.location, targetOf(entry), context().progress(), m_made);
    });
}

/// The folder to which the copy goes may lie in the one that it comes from, by a way through links.
void FolderCopy::approach(const Entry& folder, const Facts& facts) {
    if (!m_identity) {
        m_identity = factsOf(provider(), m_targets.front().location.iri()).identity;
    }
    if (!facts.identity.empty() && facts.identity == *m_identity) {
        throw refusal(folder.location, ErrorCode::InvalidLocation, "the copy goes there; it is not copied into itself");
    }
}

void FolderCopy::passLink(const Entry& entry) {
    throw refusal(entry.location, ErrorCode::NotSupported, "a link to a folder is not copied with -r");
}

/// Last, since what is created in a folder changes its time.
void FolderCopy::leave(const Entry& folder) {
    const auto attributes = provider().getFolderAttributes(folder.location.iri());
    keepTime(provider(), m_targets[folder.depth].location.iri(), attributes.lastModified());
}

CopyTarget FolderCopy::targetOf(const Entry& entry) const {
    if (entry.depth == 0) {
        return m_targets.front();
    }
    auto target = m_targets[entry.depth - 1];
    target.location = Location(target.location.iri().getChild(entry.name));
    return target;
}

/// Creates the folder, unless one is there that may be added to; what is known of the place is that of its contents.
CopyTarget FolderCopy::opened(CopyTarget target) const {
    const auto& location = target.location.iri();
    if (target.replace && !target.inNewFolder && provider().folderExists(location)) {
        const auto facts = factsOf(provider(), location);
        if (facts.link) {
            throw refusal(target.location, ErrorCode::AlreadyExists, "a link to a folder is there and not followed");
        }
        target.inOwnFolder = target.inOwnFolder || m_made.has(location, facts.identity);
        return target;
    }
    provider().createFolder(location);
    if (target.replace) {
        m_made.add(location);
    }
    target.inNewFolder = true;
    target.inOwnFolder = false;
    return target;
}

}  // namespace jstore
