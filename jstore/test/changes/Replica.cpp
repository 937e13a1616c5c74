#include "changes/Replica.h"

namespace jstore::test {

namespace fs = std::filesystem;
using foundation::storage::events::Kind;

Entries listingOf(const fs::path& folder) {
    Entries entries;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        entries.emplace(entry.path().lexically_relative(folder).string(), entry.is_directory());
    }
    return entries;
}

std::vector<std::string> difference(const Entries& from, const Entries& to) {
    std::vector<std::string> result;
    for (const auto& entry : from) {
        if (!to.contains(entry.first) || to.at(entry.first) != entry.second) {
            result.push_back('-' + entry.first);
        }
    }
    for (const auto& entry : to) {
        if (!from.contains(entry.first) || from.at(entry.first) != entry.second) {
            result.push_back('+' + entry.first);
        }
    }
    return result;
}

void Replica::apply(const Change& change) {
    switch (change.kind) {
        case Kind::ChildAdded:
            return add(change);
        case Kind::ChildRemoved:
            return remove(change);
        case Kind::ChildModified:
            if (!m_entries.contains(change.path)) {
                complain("modified, but not there", change);
            }
            return;
        case Kind::SelfModified:
            return;
        case Kind::SelfRemoved:
            complain("the watched folder is said to be gone", change);
            return;
    }
}

void Replica::add(const Change& change) {
    const auto folder = fs::path(change.path).parent_path().string();
    const auto above = m_entries.find(folder);
    if (!folder.empty() && (above == m_entries.end() || !above->second)) {
        complain("added, but its folder is not there", change);
    }
    if (!m_entries.emplace(change.path, change.isFolder).second) {
        complain("added, but there already", change);
    }
}

void Replica::remove(const Change& change) {
    const auto found = m_entries.find(change.path);
    if (found == m_entries.end() || found->second != change.isFolder) {
        complain("removed, but not there", change);
        return;
    }
    if (hasChildren(change.path)) {
        complain("removed before what is in it", change);
    }
    m_entries.erase(found);
}

bool Replica::hasChildren(const std::string& folder) const {
    const auto next = m_entries.lower_bound(folder + '/');
    return next != m_entries.end() && next->first.starts_with(folder + '/');
}

}  // namespace jstore::test
