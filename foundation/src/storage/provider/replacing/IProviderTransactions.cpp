// What replaces a file's content in one step, made of a scratch file and a move.
#include <utility>

#include "foundation/storage/provider/IProvider.h"
#include "storage/provider/replacing/ClosingStream.h"
#include "storage/provider/replacing/ReplacementChecks.h"
#include "storage/provider/replacing/ReplacingStream.h"
#include "storage/provider/replacing/ScratchFile.h"
#include "storage/provider/replacing/StreamCopy.h"

namespace foundation::storage::provider {

namespace {

void copyContent(const IProvider& provider, const StorageIRI& location, detail::StreamEnd to) {
    const detail::ClosingStream from(provider.openReadOnlyByteStream(location));
    detail::copyBytes({*from, location}, to);
    to.stream.seek(0, std::ios_base::beg);
}

std::unique_ptr<TransactionalStream> openOn(const IProvider& provider, detail::ScratchFile scratch, bool hasContent) {
    detail::ClosingStream stream = scratch.open();
    if (hasContent) {
        scratch.named([&] { copyContent(provider, scratch.target(), {*stream, scratch.location()}); });
    }
    return std::make_unique<detail::ReplacingStream>(std::move(scratch), std::move(stream));
}

}  // namespace

std::unique_ptr<TransactionalStream> IProvider::doOpenTransactionalStream(const StorageIRI& location) const {
    const bool present = detail::hasWritableFile(*this, location);
    return openOn(*this, detail::ScratchFile::beside(*this, location), present);
}

std::unique_ptr<TransactionalStream> IProvider::doOpenTransactionalStreamAtScratchLocation(
    const StorageIRI& location, const StorageIRI& scratch) const {
    if (doGetPathComparator()(location, scratch) == 0) {
        throw Exception(ErrorCode::InvalidLocation, scratch);
    }
    const bool present = detail::hasWritableFile(*this, location);
    return openOn(*this, detail::ScratchFile::at(*this, scratch, location), present);
}

void IProvider::doTruncateToSize(const StorageIRI& location, std::uint64_t size) const {
    if (detail::requireWritable(*this, location).size() == size) {
        return;
    }
    auto scratch = detail::ScratchFile::beside(*this, location);
    scratch.fill([&](detail::StreamEnd to) {
        const detail::ClosingStream from(doOpenReadOnlyByteStream(location));
        detail::writeZeros(to, size - detail::copyBytes({*from, location}, to, size));
    });
    scratch.replaceTarget(ReplacementPolicy::ReplaceExistingFile);
}

}  // namespace foundation::storage::provider
