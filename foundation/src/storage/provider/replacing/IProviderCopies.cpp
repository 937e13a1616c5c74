// Copies, made of streams and moves.
#include <optional>
#include <utility>

#include "foundation/storage/provider/IProvider.h"
#include "storage/provider/replacing/ClosingStream.h"
#include "storage/provider/replacing/ReplacementChecks.h"
#include "storage/provider/replacing/ScratchFile.h"
#include "storage/provider/replacing/StreamCopy.h"

namespace foundation::storage::provider {

namespace {

/// Writing alone also keeps a copy from cutting its own source short when two locations lead to one file.
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

/// Null if the file is gone.
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

/// Writes over a file that is there; false if it is gone by now, and nothing has happened.
bool overwrite(const IProvider& provider, detail::StreamEnd from, const StorageIRI& destination) {
    auto stream = openUnlessGone(provider, destination);
    if (stream == nullptr) {
        return false;
    }
    detail::ClosingStream to(std::move(stream));
    detail::copyBytes(from, {*to, destination});
    to.close();
    return true;
}

/// Whatever is at the destination, nobody has seen a part of the copy there, and nothing has to be taken back.
void copyThroughScratch(const IProvider& provider, detail::ClosingStream from, const StorageIRI& source,
                        const StorageIRI& destination, ReplacementPolicy policy) {
    auto scratch = detail::ScratchFile::beside(provider, destination);
    scratch.fill([&](detail::StreamEnd to) { detail::copyBytes({*from, source}, to); });
    from.closeSilently();
    scratch.replaceTarget(policy);
}

/// For back ends that cannot move files. Once it is created others may open the file as well, so it is not taken back.
void copyToNewFile(const IProvider& provider, const StorageIRI& source, const StorageIRI& destination) {
    const detail::ClosingStream from(provider.openReadOnlyByteStream(source));
    provider.createFile(destination);
    detail::ClosingStream to(provider.openByteStream(destination, ForFilling));
    if (to->seek(0, std::ios_base::end) != std::streampos(0)) {
        throw Exception(ErrorCode::InUse, destination);  // another has written it meanwhile, and keeps it
    }
    detail::copyBytes({*from, source}, {*to, destination});
    to.close();
}

}  // namespace

void IProvider::doCopyFile(const StorageIRI& source, const StorageIRI& destination,
                           const ReplacementPolicy& policy) const {
    detail::ClosingStream from(doOpenReadOnlyByteStream(source));
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
    detail::ClosingStream from(doOpenReadOnlyByteStream(source));
    if (isCopyOntoItself(*this, source, destination, policy)) {
        return;
    }
    if (detail::requireReplaceable(*this, destination, policy) == EntryType::File) {
        (void)detail::hasWritableFile(*this, destination);
    }
    copyThroughScratch(*this, std::move(from), source, destination, policy);
}

}  // namespace foundation::storage::provider
