#include "copy/FolderCopy.h"

#include <utility>

#include "base/Problem.h"
#include "work/FullStorage.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::FolderAttributes;
using foundation::storage::provider::StorageIRI;

FolderCopy::FolderCopy(Context& context, const Location& target, bool replace, WrittenTargets& written)
    : TreeWalk(context), m_written(written), m_targets{{target, replace}} {}

void FolderCopy::enter(const Entry& folder, const std::vector<Entry>& /*entries*/) {
    CopyTarget target = unlessFull(context(), folder.location, [&] { return opened(targetOf(folder)); });
    m_targets.resize(folder.depth, m_targets.front());
    m_targets.push_back(std::move(target));
}

void FolderCopy::visit(const Entry& entry) {
    if (entry.isFolder()) {
        return;
    }
    m_bytes += unlessFull(context(), entry.location, [&] {
        return copyOneFile(provider(), entry.location, targetOf(entry), context().progress(), m_written);
    });
}

/// The destination folder may lie inside the source, reached through links.
void FolderCopy::approach(const Entry& folder, const NodeInfo& info) {
    if (!m_identity) {
        m_identity = nodeInfoOf(provider(), m_targets.front().location.iri()).identity;
    }
    if (!info.identity.empty() && info.identity == *m_identity) {
        throw refusal(folder.location, ErrorCode::InvalidLocation,
                      "this folder is the destination; it is not copied into itself");
    }
}

void FolderCopy::passLink(const Entry& entry) {
    throw refusal(entry.location, ErrorCode::NotSupported, "cp -r does not copy a link to a folder");
}

/// Sets the time last, since creating files in the folder changes it.
void FolderCopy::leave(const Entry& folder) {
    const FolderAttributes attributes = provider().getFolderAttributes(folder.location.iri());
    keepTime(provider(), m_targets[folder.depth].location.iri(), attributes.lastModified());
}

CopyTarget FolderCopy::targetOf(const Entry& entry) const {
    if (entry.depth == 0) {
        return m_targets.front();
    }
    CopyTarget target = m_targets[entry.depth - 1];
    target.location = Location(target.location.iri().getChild(entry.name));
    return target;
}

/// Creates the folder unless one is there that may be added to. Returns what is then known about its contents.
CopyTarget FolderCopy::opened(CopyTarget target) const {
    const StorageIRI& location = target.location.iri();
    if (target.replace && !target.inNewFolder && provider().folderExists(location)) {
        const NodeInfo info = nodeInfoOf(provider(), location);
        if (info.link) {
            throw refusal(target.location, ErrorCode::AlreadyExists,
                          "a link to a folder is there; cp does not follow it");
        }
        target.inOwnFolder = target.inOwnFolder || m_written.has(location, info.identity);
        return target;
    }
    provider().createFolder(location);
    if (target.replace) {
        m_written.add(location);
    }
    target.inNewFolder = true;
    target.inOwnFolder = false;
    return target;
}

}  // namespace jstore
