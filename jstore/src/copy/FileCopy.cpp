#include "copy/FileCopy.h"

#include <fmt/format.h>

#include "base/Problem.h"
#include "copy/HoleWriter.h"
#include "copy/OpenFile.h"
#include "copy/PartialFile.h"
#include "copy/Replacing.h"
#include "foundation/storage/provider/Exception.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

/// Refuses before any byte is copied; the move that ends the copy is what decides.
void requireRoom(const IProvider& provider, const Location& source, const CopyTarget& target, MadeHere& made) {
    if (target.inNewFolder) {
        return;
    }
    const auto& location = target.location;
    const auto present = provider.existsExtended(location.iri());
    if (!present) {
        return;
    }
    if (!target.replace) {
        throw Exception(ErrorCode::AlreadyExists, location.iri());
    }
    if (*present == EntryType::Folder) {
        throw refusal(location, ErrorCode::NotAFile, "a file never replaces a folder");
    }
    if (target.inOwnFolder) {
        throw refuseOwn(location);
    }
    requireReplaceable(provider, source, location, made);
}

void requireCount(const Location& location, const char* what, std::uint64_t expected, std::uint64_t count) {
    if (expected != count) {
        throw refusal(location, ErrorCode::Unavailable, fmt::format("{} {} of {} bytes", what, count, expected));
    }
}

std::uint64_t copyBytes(const IProvider& provider, const Location& source, const StorageIRI& hidden,
                        Progress& progress) {
    constexpr ByteStreamOpenOptions alone{.sharing = ByteStreamOpenOptions::Sharing::Exclusive};
    OpenFile from(provider.openReadOnlyByteStream(source.iri()), source.iri());
    OpenFile to(provider.openByteStream(hidden, alone), hidden);
    HoleWriter writer(to);
    const auto count = from.readAll([&](std::string_view bytes) {
        writer.write(bytes);
        progress.advance(bytes.size());
    });
    writer.finish();
    to.close();
    return count;
}

/// A file that grows meanwhile gives more than it claims, and some that are made as they are read claim to be empty.
void requireWhole(const Location& source, const std::optional<std::uint64_t>& claimed, std::uint64_t count) {
    if (claimed && count < *claimed) {
        requireCount(source, "could read", *claimed, count);
    }
}

}  // namespace

std::uint64_t copyOneFile(const IProvider& provider, const Location& source, const CopyTarget& target,
                          Progress& progress, MadeHere& made) {
    const auto attributes = provider.getFileAttributes(source.iri());
    progress.atFile(source, attributes.size());
    requireRoom(provider, source, target, made);
    PartialFile file(provider, target.location.iri());
    const auto count =
        file.use([&](const StorageIRI& hidden) { return copyBytes(provider, source, hidden, progress); });
    requireWhole(source, attributes.size(), count);
    const auto written = file.use([&](const StorageIRI& hidden) { return provider.getFileAttributes(hidden).size(); });
    if (written) {
        requireCount(target.location, "the storage took", count, *written);
    }
    file.use([&](const StorageIRI& hidden) { keepTime(provider, hidden, attributes.lastModified()); });
    file.takePlace(target.mayReplace() ? ReplacementPolicy::ReplaceExistingFile : ReplacementPolicy::KeepExisting);
    if (target.mayReplace()) {
        made.add(target.location.iri());
    }
    progress.countItem();
    return count;
}

void keepTime(const IProvider& provider, const StorageIRI& location, const boost::posix_time::ptime& time) {
    try {
        provider.setLastModified(location, time);
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::NotSupported) {
            throw;
        }
    }
}

}  // namespace jstore
