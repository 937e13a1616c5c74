// Copies, made of streams and moves.
#include <optional>

#include "foundation/storage/provider/IProvider.h"
#include "storage/provider/ClosingStream.h"
#include "storage/provider/CreatedFile.h"
#include "storage/provider/ScratchFile.h"
#include "storage/provider/StreamCopy.h"

namespace foundation::storage::provider {

namespace {

/// Writing alone also keeps a copy from cutting its own source short when two locations lead to one file.
constexpr ByteStreamOpenOptions ForOverwriting{.creation = ByteStreamOpenOptions::Creation::CreateIfMissing,
                                               .content = ByteStreamOpenOptions::Content::Truncate,
                                               .sharing = ByteStreamOpenOptions::Sharing::Exclusive};

bool isKept(EntryType present, ReplacementPolicy policy) {
    return policy == ReplacementPolicy::KeepExisting ||
           (policy == ReplacementPolicy::ReplaceExistingFile && present == EntryType::Folder);
}

/// Refuses what the policy keeps before any byte is copied. The move that ends the copy is what decides.
void requireReplaceable(const IProvider& provider, const StorageIRI& destination, ReplacementPolicy policy) {
    const std::optional<EntryType> present = provider.existsExtended(destination);
    if (present && isKept(*present, policy)) {
        throw Exception(ErrorCode::AlreadyExists, destination);
    }
}

/// Whether source and destination are the same location, so that a copy has nothing to do.
bool isCopyOntoItself(const IProvider& provider, const StorageIRI& source, const StorageIRI& destination,
                      ReplacementPolicy policy) {
    if (provider.getPathComparator()(source, destination) != 0) {
        return false;
    }
    if (policy == ReplacementPolicy::KeepExisting) {
        throw Exception(ErrorCode::AlreadyExists, destination);
    }
    return true;
}

/// Empty if something is at the destination that the policy may replace.
std::optional<detail::CreatedFile> createDestination(const IProvider& provider, const StorageIRI& destination,
                                                     ReplacementPolicy policy) {
    try {
        return std::make_optional<detail::CreatedFile>(provider, destination);
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::AlreadyExists || policy == ReplacementPolicy::KeepExisting) {
            throw;
        }
        return std::nullopt;
    }
}

void copyThroughScratch(const IProvider& provider, const StorageIRI& source, const StorageIRI& destination,
                        ReplacementPolicy policy) {
    detail::ClosingStream from(provider.openReadOnlyByteStream(source));
    if (isCopyOntoItself(provider, source, destination, policy)) {
        return;
    }
    requireReplaceable(provider, destination, policy);
    auto scratch = detail::ScratchFile::beside(provider, destination);
    scratch.fill([&](detail::StreamEnd to) { detail::copyBytes({*from, source}, to); });
    from.closeSilently();
    scratch.replaceTarget(policy);
}

}  // namespace

void IProvider::doCopyFile(const StorageIRI& source, const StorageIRI& destination,
                           const ReplacementPolicy& policy) const {
    const detail::ClosingStream from(doOpenReadOnlyByteStream(source));
    if (isCopyOntoItself(*this, source, destination, policy)) {
        return;
    }
    auto created = createDestination(*this, destination, policy);
    if (!created && doFolderExists(destination)) {
        // A folder must not go before the bytes are there that take its place.
        copyThroughScratch(*this, source, destination, policy);
        return;
    }
    detail::ClosingStream to(doOpenByteStream(destination, ForOverwriting));
    detail::copyBytes({*from, source}, {*to, destination});
    to.close();
    if (created) {
        created->keep();
    }
}

void IProvider::doCopyFileAtomic(const StorageIRI& source, const StorageIRI& destination,
                                 const ReplacementPolicy& policy) const {
    copyThroughScratch(*this, source, destination, policy);
}

}  // namespace foundation::storage::provider
