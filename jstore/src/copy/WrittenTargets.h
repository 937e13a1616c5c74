#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "foundation/storage/provider/IProvider.h"

namespace jstore {

/// The files and folders that a command has put in place, so that it never replaces one of its own results with
/// another. Uses the provider, which must outlive it.
class WrittenTargets {
public:
    explicit WrittenTargets(const foundation::storage::provider::IProvider& provider) : m_provider(provider) {}

    void add(const foundation::storage::provider::StorageIRI& location);

    /// Whether this command has put in place what the location leads to: compares the spelling, and the identity
    /// (empty if unknown), which also holds for other spellings and links. The first call with an identity asks the
    /// back end for the identities of everything that was added.
    [[nodiscard]] bool has(const foundation::storage::provider::StorageIRI& location, const std::string& identity);

private:
    const foundation::storage::provider::IProvider& m_provider;
    std::unordered_set<std::u16string> m_spellings;
    std::unordered_set<std::string> m_identities;
    std::vector<foundation::storage::provider::StorageIRI> m_unidentified;  ///< their identities are not known yet
};

}  // namespace jstore
