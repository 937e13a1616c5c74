#include "copy/WrittenTargets.h"

#include <utility>

#include "base/NodeInfo.h"

namespace jstore {

using foundation::storage::provider::StorageIRI;

void WrittenTargets::add(const StorageIRI& location) {
    StorageIRI normal = location.normalized();
    if (m_spellings.insert(normal.text()).second) {
        m_unidentified.push_back(std::move(normal));
    }
}

bool WrittenTargets::has(const StorageIRI& location, const std::string& identity) {
    if (m_spellings.contains(location.normalized().text())) {
        return true;
    }
    if (identity.empty()) {
        return false;
    }
    for (const StorageIRI& written : std::exchange(m_unidentified, {})) {
        m_identities.insert(nodeInfoOf(m_provider, written).identity);
    }
    return m_identities.contains(identity);
}

}  // namespace jstore
