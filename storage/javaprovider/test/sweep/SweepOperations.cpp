#include "sweep/SweepOperations.h"

#include <boost/property_tree/ptree.hpp>

#include <iterator>
#include <utility>

#include "JavaProviderTime.h"
#include "sweep/SweepNames.h"
#include "sweep/SweepResults.h"

namespace storage::javaprovider::test {

namespace {

using foundation::storage::provider::ExtendedFeature;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::StorageIRI;
using Uses = SweepOperation::Uses;

const StorageIRI A = SweptLocation;
const StorageIRI B = OtherLocation;

/// An operation of a provider, which is made before its calls count.
SweepOperation of(const std::string& name, std::function<std::string(const IProvider&)> run) {
    return {name, &SweepStage::makeProvider, [run = std::move(run)](SweepStage& stage) { return run(*stage.provider); },
            Uses::Provider};
}

/// An operation whose result is the calls that the back end receives.
SweepOperation telling(const std::string& name, std::function<void(const IProvider&)> run) {
    return {name, &SweepStage::makeProvider,
            [run = std::move(run)](SweepStage& stage) { return stage.told([&] { run(*stage.provider); }); },
            Uses::Provider};
}

void configure(SweepStage& stage) {
    boost::property_tree::ptree settings;
    settings.put("gds.enableContentCache", "true");
    stage.configurable().configure(settings);
}

std::string fileAttributes(const IProvider& provider) {
    const auto found = provider.getFileAttributes(A);
    return std::to_string(found.size().value()) + " " + word(found.writable()) + " " +
           std::to_string(ptimeToMillis(found.lastModified()));
}

std::string folderAttributes(const IProvider& provider) {
    const auto found = provider.getFolderAttributes(A);
    return word(found.writable()) + " " + std::to_string(ptimeToMillis(found.lastModified()));
}

std::string storageInfo(const IProvider& provider) {
    const auto found = provider.getProviderStorageInfo(A);
    return std::to_string(found.storageCapacity().value()) + " " + std::to_string(found.spaceOccupied().value());
}

}  // namespace

std::vector<SweepOperation> sweptFileOperations() {
    return {telling("createFile", [](auto& p) { p.createFile(A); }),
            telling("createFolder", [](auto& p) { p.createFolder(A); }),
            of("fileExists", [](auto& p) { return word(p.fileExists(A)); }),
            of("folderExists", [](auto& p) { return word(p.folderExists(A)); }),
            telling("removeFile", [](auto& p) { p.removeFile(A); }),
            telling("removeFolder", [](auto& p) { p.removeFolder(A); }),
            telling("removeFolderRecursive", [](auto& p) { p.removeFolderRecursive(A); }),
            telling("moveFile", [](auto& p) { p.moveFile(A, B); }),
            telling("moveFolder", [](auto& p) { p.moveFolder(A, B); }),
            telling("setLastModified", [](auto& p) { p.setLastModified(A, millisToPtime(1000)); })};
}

std::vector<SweepOperation> sweptQueries() {
    return {of("file attributes", fileAttributes),
            of("folder attributes", folderAttributes),
            of("extended attributes", [](auto& p) { return attributesOf(p.getExtendedAttributes(A)); }),
            of("storage info", storageInfo),
            of("list all", [](auto& p) { return namesOf(p.listAll(A)); }),
            of("list files", [](auto& p) { return namesOf(p.listFiles(A)); }),
            of("list folders", [](auto& p) { return namesOf(p.listFolders(A)); }),
            of("hasFeature", [](auto& p) { return word(p.hasFeature(ExtendedFeature::RecursiveFolderRemoval)); }),
            {"configure", &SweepStage::makeProvider,
             [](SweepStage& stage) { return stage.told([&] { configure(stage); }); }, Uses::Provider}};
}

std::vector<SweepOperation> sweepOperations() {
    std::vector<SweepOperation> all;
    for (auto part : {sweptFileOperations(), sweptQueries(), sweptStreamOperations(), sweptEventOperations(),
                      sweptMakings(), sweptDestructions(), sweptFailures()}) {
        std::move(part.begin(), part.end(), std::back_inserter(all));
    }
    return all;
}

}  // namespace storage::javaprovider::test
