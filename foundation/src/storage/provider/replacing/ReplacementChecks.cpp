#include "storage/provider/replacing/ReplacementChecks.h"

namespace foundation::storage::provider::detail {

namespace {

bool isKept(EntryType present, ReplacementPolicy policy) {
    return policy == ReplacementPolicy::KeepExisting ||
           (policy == ReplacementPolicy::ReplaceExistingFile && present == EntryType::Folder);
}

}  // namespace

std::optional<EntryType> requireReplaceable(const IProvider& provider, const StorageIRI& destination,
                                            ReplacementPolicy policy) {
    const std::optional<EntryType> present = provider.existsExtended(destination);
    if (present && isKept(*present, policy)) {
        throw Exception(ErrorCode::AlreadyExists, destination);
    }
    return present;
}

FileAttributes requireWritable(const IProvider& provider, const StorageIRI& location) {
    const FileAttributes attributes = provider.getFileAttributes(location);
    if (!attributes.writable()) {
        throw Exception(ErrorCode::AccessDenied, location);
    }
    return attributes;
}

bool hasWritableFile(const IProvider& provider, const StorageIRI& location) {
    try {
        (void)requireWritable(provider, location);
        return true;
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::NotFound) {
            throw;
        }
        return false;
    }
}

}  // namespace foundation::storage::provider::detail
