#include "copy/FileCopy.h"

#include <fmt/format.h>

#include "base/Problem.h"
#include "copy/HoleWriter.h"
#include "copy/ReadAll.h"
#include "copy/ReplacementChecks.h"
#include "foundation/storage/provider/Exception.h"
#include "foundation/storage/provider/ScratchFile.h"

namespace jstore {

using namespace foundation::storage::provider;

namespace {

/// Refuses before any byte is copied. The move that ends the copy has the last word.
void requireRoom(const IProvider& provider, const Location& source, const CopyTarget& target, WrittenTargets& written) {
    if (target.inNewFolder) {
        return;
    }
    const Location& location = target.location;
    const std::optional<EntryType> present = provider.existsExtended(location.iri());
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
    requireReplaceable(provider, source, location, written);
}

void requireCount(const Location& location, const char* what, std::uint64_t expected, std::uint64_t count) {
    if (expected != count) {
        throw refusal(location, ErrorCode::Unavailable, fmt::format("{} {} of {} bytes", what, count, expected));
    }
}

std::uint64_t fill(ScratchFile& file, const IProvider& provider, const Location& source, Progress& progress) {
    const ClosingStream from(provider.openReadOnlyByteStream(source.iri()));
    std::uint64_t count = 0;
    file.fill([&](StreamEnd to) {
        HoleWriter writer(to);
        count = readAll({*from, source.iri()}, [&](std::string_view bytes) {
            writer.write(bytes);
            progress.advance(bytes.size());
        });
        writer.finish();
    });
    return count;
}

/// More bytes than claimed are no error: a file may grow during the copy, and some files, whose content is made when it
/// is read, claim to be empty.
void requireWhole(const Location& source, const std::optional<std::uint64_t>& claimed, std::uint64_t count) {
    if (claimed && count < *claimed) {
        requireCount(source, "could read only", *claimed, count);
    }
}

}  // namespace

std::uint64_t copyOneFile(const IProvider& provider, const Location& source, const CopyTarget& target,
                          Progress& progress, WrittenTargets& written) {
    const FileAttributes attributes = provider.getFileAttributes(source.iri());
    progress.atFile(source, attributes.size());
    requireRoom(provider, source, target, written);
    ScratchFile file = ScratchFile::beside(provider, target.location.iri());
    const std::uint64_t count = fill(file, provider, source, progress);
    requireWhole(source, attributes.size(), count);
    file.named([&] {
        if (const std::optional<std::uint64_t> taken = provider.getFileAttributes(file.location()).size()) {
            requireCount(target.location, "the storage took only", count, *taken);
        }
        keepTime(provider, file.location(), attributes.lastModified());
    });
    file.replaceTarget(target.mayReplace() ? ReplacementPolicy::ReplaceExistingFile : ReplacementPolicy::KeepExisting);
    if (target.mayReplace()) {
        written.add(target.location.iri());
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
