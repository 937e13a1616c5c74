#include "Locations.h"
#include "Pairs.h"

namespace bench {

namespace {

using foundation::storage::provider::ReplacementPolicy;

constexpr const char* Group = "operations";
constexpr double Target = 1.15;
constexpr jlong Millis = 1'700'000'000'123;
/// How many the idle back end gives.
constexpr std::int64_t AttributeCount = 16;

Pair fileExists(Sides& sides) {
    return {"fileExists",
            Group,
            Target,
            1,
            operation([&sides] { return sides.floor.fileExists(File.text); }),
            operation([&sides] { return sides.provider->fileExists(File.iri); })};
}

Pair createFile(Sides& sides) {
    return {
        "createFile", Group, Target, 1, operation([&sides] { sides.floor.createFile(File.text); }), operation([&sides] {
            sides.provider->createFile(File.iri);
        })};
}

Pair removeFile(Sides& sides) {
    return {
        "removeFile", Group, Target, 1, operation([&sides] { sides.floor.removeFile(File.text); }), operation([&sides] {
            sides.provider->removeFile(File.iri);
        })};
}

Pair moveFile(Sides& sides) {
    return {
        "moveFile",
        Group,
        Target,
        1,
        operation([&sides] { sides.floor.moveFile(File.text, OtherFile.text, /*replace=*/true); }),
        operation([&sides] { sides.provider->moveFile(File.iri, OtherFile.iri, ReplacementPolicy::ReplaceExisting); })};
}

Pair getFileAttributes(Sides& sides) {
    return {"getFileAttributes",
            Group,
            Target,
            1,
            operation([&sides] { return sides.floor.getFileAttributes(File.text); }),
            operation([&sides] { return sides.provider->getFileAttributes(File.iri); })};
}

Pair setLastModified(Sides& sides) {
    const boost::posix_time::ptime time(boost::gregorian::date(2023, 11, 14), boost::posix_time::hours(22));
    return {"setLastModified",
            Group,
            Target,
            1,
            operation([&sides] { sides.floor.setLastModified(File.text, Millis); }),
            operation([&sides, time] { sides.provider->setLastModified(File.iri, time); })};
}

Pair getExtendedAttributes(Sides& sides) {
    return {"getExtendedAttributes",
            Group,
            Target,
            AttributeCount,
            operation([&sides] { return sides.floor.getExtendedAttributes(File.text); }),
            operation([&sides] { return sides.provider->getExtendedAttributes(File.iri); })};
}

Pair getProviderStorageInfo(Sides& sides) {
    return {"getProviderStorageInfo",
            Group,
            Target,
            1,
            operation([&sides] { return sides.floor.getProviderStorageInfo(Folder.text); }),
            operation([&sides] { return sides.provider->getProviderStorageInfo(Folder.iri); })};
}

}  // namespace

std::vector<Pair> operationPairs(Sides& sides) {
    return {fileExists(sides),
            createFile(sides),
            removeFile(sides),
            moveFile(sides),
            getFileAttributes(sides),
            setLastModified(sides),
            getExtendedAttributes(sides),
            getProviderStorageInfo(sides)};
}

Pair listingPair(Sides& sides, int entryCount) {
    sides.machine.setListing(entryCount);
    return {"listAll/" + std::to_string(entryCount),
            "listings",
            1.05,
            entryCount,
            operation([&sides] { return sides.floor.listAll(Folder.text); }),
            operation([&sides] { return sides.provider->listAll(Folder.iri); })};
}

}  // namespace bench
