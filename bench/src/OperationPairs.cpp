#include "Locations.h"
#include "Pairs.h"

namespace bench {

namespace {

using foundation::storage::provider::IProvider;
using foundation::storage::provider::ReplacementPolicy;

/// How many the idle back end gives.
constexpr std::int64_t AttributeCount = 16;

/// An operation on the floors and on the library's provider; the figures are for each of `units`.
template <class OnFloor, class OnProvider>
Pair comparison(Sides& sides, const char* name, OnFloor onFloor, OnProvider onProvider, std::int64_t units = 1) {
    return {name,
            "operations",
            1.15,
            units,
            operation([&floor = sides.floor.provider, onFloor] { return onFloor(floor); }),
            operation([&provider = *sides.provider, onProvider] { return onProvider(provider); }),
            operation([&floor = sides.bare.provider, onFloor] { return onFloor(floor); })};
}

std::vector<Pair> filePairs(Sides& sides) {
    const boost::posix_time::ptime time(boost::gregorian::date(2023, 11, 14), boost::posix_time::hours(22));
    return {
        comparison(
            sides, "fileExists", [](const FloorProvider& floor) { return floor.fileExists(File.text); },
            [](const IProvider& provider) { return provider.fileExists(File.iri); }),
        comparison(
            sides, "createFile", [](const FloorProvider& floor) { floor.createFile(File.text); },
            [](const IProvider& provider) { provider.createFile(File.iri); }),
        comparison(
            sides, "removeFile", [](const FloorProvider& floor) { floor.removeFile(File.text); },
            [](const IProvider& provider) { provider.removeFile(File.iri); }),
        comparison(
            sides, "moveFile",
            [](const FloorProvider& floor) { floor.moveFile(File.text, OtherFile.text, /*replace=*/true); },
            [](const IProvider& provider) {
                provider.moveFile(File.iri, OtherFile.iri, ReplacementPolicy::ReplaceExisting);
            }),
        comparison(
            sides, "getFileAttributes", [](const FloorProvider& floor) { return floor.getFileAttributes(File.text); },
            [](const IProvider& provider) { return provider.getFileAttributes(File.iri); }),
        comparison(
            sides, "setLastModified", [time](const FloorProvider& floor) { floor.setLastModified(File.text, time); },
            [time](const IProvider& provider) { provider.setLastModified(File.iri, time); })};
}

std::vector<Pair> folderPairs(Sides& sides) {
    return {comparison(
                sides, "folderExists", [](const FloorProvider& floor) { return floor.folderExists(Folder.text); },
                [](const IProvider& provider) { return provider.folderExists(Folder.iri); }),
            comparison(
                sides, "createFolder", [](const FloorProvider& floor) { floor.createFolder(Folder.text); },
                [](const IProvider& provider) { provider.createFolder(Folder.iri); }),
            comparison(
                sides, "moveFolder",
                [](const FloorProvider& floor) { floor.moveFolder(Folder.text, OtherFolder.text, /*replace=*/true); },
                [](const IProvider& provider) {
                    provider.moveFolder(Folder.iri, OtherFolder.iri, ReplacementPolicy::ReplaceExisting);
                }),
            comparison(
                sides, "getFolderAttributes",
                [](const FloorProvider& floor) { return floor.getFolderAttributes(Folder.text); },
                [](const IProvider& provider) { return provider.getFolderAttributes(Folder.iri); }),
            comparison(
                sides, "getProviderStorageInfo",
                [](const FloorProvider& floor) { return floor.getProviderStorageInfo(Folder.text); },
                [](const IProvider& provider) { return provider.getProviderStorageInfo(Folder.iri); })};
}

}  // namespace

std::vector<Pair> operationPairs(Sides& sides) {
    std::vector<Pair> pairs = filePairs(sides);
    pairs.push_back(comparison(
        sides, "getExtendedAttributes",
        [](const FloorProvider& floor) { return floor.getExtendedAttributes(File.text); },
        [](const IProvider& provider) { return provider.getExtendedAttributes(File.iri); }, AttributeCount));
    for (Pair& pair : folderPairs(sides)) {
        pairs.push_back(std::move(pair));
    }
    return pairs;
}

Pair listingPair(Sides& sides, int entryCount) {
    sides.machine.setListing(entryCount);
    return {"listAll/" + std::to_string(entryCount),
            "listings",
            1.05,
            entryCount,
            operation([&sides] { return sides.floor.provider.listAll(Folder.text); }),
            operation([&sides] { return sides.provider->listAll(Folder.iri); }),
            operation([&sides] { return sides.bare.provider.listAll(Folder.text); })};
}

}  // namespace bench
