#include "copy/MadeHere.h"

#include <utility>

#include "base/Facts.h"

namespace jstore {

using foundation::storage::provider::StorageIRI;

void MadeHere::add(const StorageIRI& location) {
    auto normal = location.normalized();
    if (m_spellings.insert(normal.text()).second) {
        m_unidentified.push_back(std::move(normal));
    }
}

bool MadeHere::has(const StorageIRI& location, const std::string& identity) {
    if (m_spellings.contains(location.normalized().text())) {
        return true;
    }
    if (identity.empty()) {
        return false;
    }
    for (const auto& made : std::exchange(m_unidentified, {})) {
        m_identities.insert(factsOf(m_provider, made).identity);
    }
    return m_identities.contains(identity);
}

}  // namespace jstore
