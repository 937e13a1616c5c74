#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "foundation/storage/provider/IProvider.h"

namespace jstore {

/// The files and folders that a command has put in their places, so that it never replaces one of them by another of
/// its own. Uses the provider, which must outlive it.
class MadeHere {
public:
    explicit MadeHere(const foundation::storage::provider::IProvider& provider) : m_provider(provider) {}

    void add(const foundation::storage::provider::StorageIRI& location);

    /// Whether what the location leads to was put there by this command: by its spelling, or by its identity (empty if
    /// that is not known), which sees through other spellings and links. The first question with an identity asks the
    /// back end for those of all that was added.
    [[nodiscard]] bool has(const foundation::storage::provider::StorageIRI& location, const std::string& identity);

private:
    const foundation::storage::provider::IProvider& m_provider;
    std::unordered_set<std::u16string> m_spellings;
    std::unordered_set<std::string> m_identities;
    std::vector<foundation::storage::provider::StorageIRI> m_unidentified;  ///< whose identity was not asked for yet
};

}  // namespace jstore
