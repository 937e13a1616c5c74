#include "foundation/storage/provider/IProvider.h"

#include <vector>

#include "storage/provider/polling/PollerSlot.h"

namespace foundation::storage::provider {

namespace {

[[noreturn]] void throwNotSupported(const StorageIRI& location = {}) {
    throw Exception(ErrorCode::NotSupported, location);
}

/// Creates a folder unless it is there by now: another thread or process may create it at the same time.
void ensureFolder(const IProvider& provider, const StorageIRI& location) {
    try {
        provider.createFolder(location);
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::AlreadyExists) {
            throw;
        }
        if (provider.fileExists(location)) {
            throw Exception(ErrorCode::NotAFolder, location);
        }
        if (!provider.folderExists(location)) {
            throw;
        }
    }
}

}  // namespace

IProvider::~IProvider() { detail::endPoller(m_poller); }

// ---- made of other operations ----

void IProvider::doCreateFolderRecursive(const StorageIRI& location) const {
    if (location.empty()) {
        throw Exception(ErrorCode::InvalidLocation, location);
    }
    std::vector<StorageIRI> missing;
    for (StorageIRI folder = location; !folder.isRoot() && !doFolderExists(folder); folder = folder.getParent()) {
        if (doFileExists(folder)) {
            throw Exception(ErrorCode::NotAFolder, folder);
        }
        missing.push_back(folder);
    }
    for (; !missing.empty(); missing.pop_back()) {
        ensureFolder(*this, missing.back());
    }
}

bool IProvider::doExists(const StorageIRI& location) const {
    return doFileExists(location) || doFolderExists(location);
}

std::optional<EntryType> IProvider::doExistsExtended(const StorageIRI& location) const {
    if (doFileExists(location)) {
        return EntryType::File;
    }
    if (doFolderExists(location)) {
        return EntryType::Folder;
    }
    return std::nullopt;
}

void IProvider::doShutdown() {}

// ---- metadata ----

void IProvider::doSetWritable(const StorageIRI& location, bool) const { throwNotSupported(location); }

// ---- the provider itself ----

PathComparator IProvider::doGetPathComparator() const {
    return [](const StorageIRI& left, const StorageIRI& right) {
        return left.normalized().text().compare(right.normalized().text());
    };
}

StorageIRI IProvider::doGetCanonicalLocation(const StorageIRI& location) const { return location.normalized(); }

FilenameSensitivity IProvider::doGetFilenameSensitivity(const StorageIRI& location) const {
    throwNotSupported(location);
}

ProviderCacheUsage IProvider::doGetProviderCacheUsage() const { throwNotSupported(); }

}  // namespace foundation::storage::provider
