// Copies, made of streams and moves.
#include <optional>
#include <utility>

#include "foundation/storage/provider/ClosingStream.h"
#include "foundation/storage/provider/IProvider.h"
#include "foundation/storage/provider/ScratchFile.h"
#include "foundation/storage/provider/StreamCopy.h"
#include "storage/provider/replacing/ReplacementChecks.h"

namespace foundation::storage::provider {

namespace {

/// Exclusive, so that a copy does not cut its own source short when two locations lead to one file.
constexpr ByteStreamOpenOptions ForOverwriting{.content = ByteStreamOpenOptions::Content::Truncate,
                                               .sharing = ByteStreamOpenOptions::Sharing::Exclusive};
constexpr ByteStreamOpenOptions ForFilling{.sharing = ByteStreamOpenOptions::Sharing::Exclusive};

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

/// The stream of the file; null if the file is gone.
std::unique_ptr<ByteStream> openUnlessGone(const IProvider& provider, const StorageIRI& file) {
    try {
        return provider.openByteStream(file, ForOverwriting);
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::NotFound) {
            throw;
        }
        return nullptr;
    }
}

/// Writes over a file that is there. Returns false, and has done nothing, if the file is gone by now.
bool overwrite(const IProvider& provider, StreamEnd from, const StorageIRI& destination) {
    auto stream = openUnlessGone(provider, destination);
    if (stream == nullptr) {
        return false;
    }
    ClosingStream to(std::move(stream));
    copyBytes(from, {*to, destination});
    to.close();
    return true;
}

/// Copies through a scratch file: nobody sees a part of the copy at the destination, and nothing is to be undone.
void copyThroughScratch(const IProvider& provider, ClosingStream from, const StorageIRI& source,
                        const StorageIRI& destination, ReplacementPolicy policy) {
    auto scratch = ScratchFile::beside(provider, destination);
    scratch.fill([&](StreamEnd to) { copyBytes({*from, source}, to); });
    from.closeSilently();
    scratch.replaceTarget(policy);
}

/// Copies in place, for back ends that cannot move files. Others may open the file once it is created, so it stays.
void copyToNewFile(const IProvider& provider, const StorageIRI& source, const StorageIRI& destination) {
    const ClosingStream from(provider.openReadOnlyByteStream(source));
    provider.createFile(destination);
    ClosingStream to(provider.openByteStream(destination, ForFilling));
    if (to->seek(0, std::ios_base::end) != std::streampos(0)) {
        throw Exception(ErrorCode::InUse, destination);  // another writer was faster, and keeps the file
    }
    copyBytes({*from, source}, {*to, destination});
    to.close();
}

}  // namespace

void IProvider::doCopyFile(const StorageIRI& source, const StorageIRI& destination,
                           const ReplacementPolicy& policy) const {
    ClosingStream from(doOpenReadOnlyByteStream(source));
    if (isCopyOntoItself(*this, source, destination, policy)) {
        return;
    }
    const std::optional<EntryType> present = detail::requireReplaceable(*this, destination, policy);
    if (present == EntryType::File && overwrite(*this, {*from, source}, destination)) {
        return;
    }
    try {
        copyThroughScratch(*this, std::move(from), source, destination, policy);
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::NotSupported || present) {
            throw;
        }
        copyToNewFile(*this, source, destination);
    }
}

void IProvider::doCopyFileAtomic(const StorageIRI& source, const StorageIRI& destination,
                                 const ReplacementPolicy& policy) const {
    ClosingStream from(doOpenReadOnlyByteStream(source));
    if (isCopyOntoItself(*this, source, destination, policy)) {
        return;
    }
    if (detail::requireReplaceable(*this, destination, policy) == EntryType::File) {
        (void)detail::hasWritableFile(*this, destination);
    }
    copyThroughScratch(*this, std::move(from), source, destination, policy);
}

}  // namespace foundation::storage::provider
