#pragma once

#include "foundation/storage/provider/IProvider.h"

namespace jstore {

/// A new, hidden file beside a target, that is to take the target's place when it is complete. Removed at the end of
/// the scope unless it did.
///
/// Streams on it have to be closed first. Errors about it name the target, since nobody knows the hidden name. Uses the
/// provider, which must outlive it.
class PartialFile {
public:
    /// Creates the file. Fails as IProvider::createFile() does for the target.
    PartialFile(const foundation::storage::provider::IProvider& provider,
                foundation::storage::provider::StorageIRI target);
    ~PartialFile();

    PartialFile(const PartialFile&) = delete;
    PartialFile& operator=(const PartialFile&) = delete;

    /// Does something with the hidden file's location, and gives back what that gives.
    template <class Action>
    decltype(auto) use(const Action& action) const {
        try {
            return action(m_location);
        } catch (const foundation::storage::provider::Exception& error) {
            if (error.location().normalized() != m_location.normalized()) {
                throw;
            }
            throw foundation::storage::provider::Exception(error.code(), m_target);
        }
    }

    /// Moves the file to the target. Fails as IProvider::moveFile() does; after an error the target is as it was.
    void takePlace(foundation::storage::provider::ReplacementPolicy policy);

private:
    const foundation::storage::provider::IProvider& m_provider;
    foundation::storage::provider::StorageIRI m_target;
    foundation::storage::provider::StorageIRI m_location;
    bool m_inPlace = false;
};

}  // namespace jstore
