// Operations that replace a file's content in one step, by a scratch file and a move.
#include <utility>

#include "foundation/storage/provider/ClosingStream.h"
#include "foundation/storage/provider/IProvider.h"
#include "foundation/storage/provider/ScratchFile.h"
#include "foundation/storage/provider/StreamCopy.h"
#include "storage/provider/replacing/ReplacementChecks.h"
#include "storage/provider/replacing/ReplacingStream.h"

namespace foundation::storage::provider {

namespace {

void copyContent(const IProvider& provider, const StorageIRI& location, StreamEnd to) {
    const ClosingStream from(provider.openReadOnlyByteStream(location));
    copyBytes({*from, location}, to);
    to.stream.seek(0, std::ios_base::beg);
}

std::unique_ptr<TransactionalStream> openOn(const IProvider& provider, ScratchFile scratch, bool hasContent) {
    ClosingStream stream = scratch.open();
    if (hasContent) {
        scratch.named([&] { copyContent(provider, scratch.target(), {*stream, scratch.location()}); });
    }
    return std::make_unique<detail::ReplacingStream>(std::move(scratch), std::move(stream));
}

}  // namespace

std::unique_ptr<TransactionalStream> IProvider::doOpenTransactionalStream(const StorageIRI& location) const {
    const bool present = detail::hasWritableFile(*this, location);
    return openOn(*this, ScratchFile::beside(*this, location), present);
}

std::unique_ptr<TransactionalStream> IProvider::doOpenTransactionalStreamAtScratchLocation(
    const StorageIRI& location, const StorageIRI& scratch) const {
    if (doGetPathComparator()(location, scratch) == 0) {
        throw Exception(ErrorCode::InvalidLocation, scratch);
    }
    const bool present = detail::hasWritableFile(*this, location);
    return openOn(*this, ScratchFile::at(*this, scratch, location), present);
}

void IProvider::doTruncateToSize(const StorageIRI& location, std::uint64_t size) const {
    if (detail::requireWritable(*this, location).size() == size) {
        return;
    }
    auto scratch = ScratchFile::beside(*this, location);
    scratch.fill([&](StreamEnd to) {
        const ClosingStream from(doOpenReadOnlyByteStream(location));
        writeZeros(to, size - copyBytes({*from, location}, to, size));
    });
    scratch.replaceTarget(ReplacementPolicy::ReplaceExistingFile);
}

}  // namespace foundation::storage::provider
