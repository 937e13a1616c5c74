#include "sweep/SweepOperations.h"

#include <boost/property_tree/ptree.hpp>

#include <array>
#include <cstdint>
#include <iterator>
#include <utility>

#include "JavaProvider.h"
#include "JavaProviderEvents.h"
#include "data/Listing.h"
#include "storage/javaprovider/EntryPoints.h"
#include "support/JniRecorder.h"
#include "sweep/SweepNames.h"

namespace storage::javaprovider::test {

namespace {

using foundation::storage::provider::ChangeCallback;
using foundation::storage::provider::ExtendedFeature;
using foundation::storage::provider::IFolderEntryIterator;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::StorageIRI;

const StorageIRI A = SweptLocation;
const StorageIRI B{u"java://test/b"};

const ChangeCallback ignoreEvents = [](const auto&...) {};

std::string word(bool value) { return value ? "true" : "false"; }

std::string namesOf(const std::unique_ptr<IFolderEntryIterator>& entries) {
    std::string names;
    for (const auto& [name, type] : childrenOf(entries)) {
        names.append(name.begin(), name.end()).append(" ");
    }
    return names;
}

std::string attributesOf(const foundation::storage::provider::ExtendedAttributes& attributes) {
    std::string text;
    for (const auto& [name, value] : attributes.all()) {
        text += name + "=" + boost::any_cast<std::string>(value) + " ";
    }
    return text;
}

void nothing(SweepStage&) {}

/// An operation of a provider, which is made before its calls count.
SweepOperation of(const std::string& name, std::function<std::string(const IProvider&)> run) {
    return {name, &SweepStage::makeProvider,
            [run = std::move(run)](SweepStage& stage) { return run(*stage.provider); }};
}

SweepOperation voidOf(const std::string& name, std::function<void(const IProvider&)> run) {
    return of(name, [run = std::move(run)](const IProvider& provider) {
        run(provider);
        return std::string();
    });
}

void add(std::vector<SweepOperation>& all, std::vector<SweepOperation> more) {
    std::move(more.begin(), more.end(), std::back_inserter(all));
}

std::vector<SweepOperation> fileOperations() {
    return {voidOf("createFile", [](auto& p) { p.createFile(A); }),
            voidOf("createFolder", [](auto& p) { p.createFolder(A); }),
            of("fileExists", [](auto& p) { return word(p.fileExists(A)); }),
            of("folderExists", [](auto& p) { return word(p.folderExists(A)); }),
            voidOf("removeFile", [](auto& p) { p.removeFile(A); }),
            voidOf("removeFolder", [](auto& p) { p.removeFolder(A); }),
            voidOf("removeFolderRecursive", [](auto& p) { p.removeFolderRecursive(A); }),
            voidOf("moveFile", [](auto& p) { p.moveFile(A, B); }),
            voidOf("moveFolder", [](auto& p) { p.moveFolder(A, B); }),
            voidOf("setLastModified", [](auto& p) { p.setLastModified(A, {}); })};
}

std::vector<SweepOperation> queries() {
    return {of("file attributes",
               [](auto& p) {
                   const auto found = p.getFileAttributes(A);
                   return std::to_string(found.size().value()) + " " + word(found.writable());
               }),
            of("folder attributes", [](auto& p) { return word(p.getFolderAttributes(A).writable()); }),
            of("extended attributes", [](auto& p) { return attributesOf(p.getExtendedAttributes(A)); }),
            of("storage info",
               [](auto& p) { return std::to_string(p.getProviderStorageInfo(A).storageCapacity().value()); }),
            of("list all", [](auto& p) { return namesOf(p.listAll(A)); }),
            of("list files", [](auto& p) { return namesOf(p.listFiles(A)); }),
            of("list folders", [](auto& p) { return namesOf(p.listFolders(A)); }),
            of("hasFeature", [](auto& p) { return word(p.hasFeature(ExtendedFeature::RecursiveFolderRemoval)); }),
            {"configure", &SweepStage::makeProvider, [](SweepStage& stage) {
                 boost::property_tree::ptree settings;
                 settings.put("gds.enableContentCache", "true");
                 stage.configurable().configure(settings);
                 return std::string();
             }}};
}

/// An operation of an open stream.
SweepOperation ofStream(const std::string& name,
                        std::function<std::string(foundation::storage::provider::ByteStream&)> run) {
    const auto prepare = [](SweepStage& stage) {
        stage.makeProvider();
        stage.openStream();
    };
    return {name, prepare, [run = std::move(run)](SweepStage& stage) { return run(*stage.stream); },
            /*repeatable=*/false};
}

std::string seek(foundation::storage::provider::ByteStream& stream, std::ios_base::seekdir way) {
    return std::to_string(std::streamoff(stream.seek(1, way)));
}

std::vector<SweepOperation> streamOperations() {
    return {{"open stream", &SweepStage::makeProvider,
             [](SweepStage& stage) {
                 stage.openStream();
                 return std::string();
             },
             /*repeatable=*/false},
            {"open read-only stream", &SweepStage::makeProvider,
             [](SweepStage& stage) {
                 stage.stream = stage.provider->openReadOnlyByteStream(A);
                 return std::string();
             },
             /*repeatable=*/false},
            ofStream("read", [memory = std::array<char, 4>()](
                                 auto& s) mutable { return std::to_string(s.read(memory.data(), memory.size())); }),
            ofStream("write", [](auto& s) { return std::to_string(s.write("xy", 2)); }),
            ofStream("seek from the beginning", [](auto& s) { return seek(s, std::ios_base::beg); }),
            ofStream("seek from here", [](auto& s) { return seek(s, std::ios_base::cur); }),
            ofStream("seek from the end", [](auto& s) { return seek(s, std::ios_base::end); }),
            ofStream("close", [](auto& s) {
                s.close();
                return std::string();
            })};
}

/// nativePublish as Java calls it, on this thread.
std::string publishNatively(SweepStage& stage) {
    int events = 0;
    const ChangeCallback count = [&events](const auto&...) { ++events; };
    const auto handle = static_cast<jlong>(reinterpret_cast<std::uintptr_t>(&count));
    nativePublishImpl(stage.env, nullptr, handle, stage.text(u"ChildAdded"), stage.text(u"java://test"),
                      stage.text(u"java://test/a"), stage.text(u"File"), stage.text(u"me"));
    return std::to_string(events);
}

std::vector<SweepOperation> eventOperations() {
    const auto started = [](SweepStage& stage) {
        stage.makeProvider();
        stage.provider->startChangeNotification(A, ignoreEvents);
    };
    const auto start = [](SweepStage& stage) {
        stage.provider->startChangeNotification(B, ignoreEvents);
        return std::string();
    };
    return {{"start: the first", &SweepStage::makeProvider, start},
            {"start: a later one", started, start},
            {"start: after the publisher is gone",
             [started](SweepStage& stage) {
                 started(stage);
                 stage.collectPublishers();
             },
             start},
            voidOf("start: on the parent", [](auto& p) { p.startChangeNotificationOnParent(A, ignoreEvents); }),
            {"stop", started,
             [](SweepStage& stage) {
                 stage.provider->stopChangeNotification(A);
                 return std::string();
             }},
            {"nativePublish", nothing, publishNatively}};
}

std::string made(SweepStage& stage, std::shared_ptr<IProvider> provider) {
    stage.provider = std::move(provider);
    return "made";
}

std::vector<SweepOperation> makings() {
    const auto byClass = [](const char* name) {
        return [name](SweepStage& s) { return made(s, std::shared_ptr<IProvider>(buildProvider(s.handle, name))); };
    };
    const auto byFactory = [](const char* name) {
        return [name](SweepStage& s) { return made(s, buildPhysicalFactory(s.handle, name)->createProvider()); };
    };
    const char* const throwing = "com/corvallen/storage/test/ThrowingConstructorProvider";
    return {
        {"make over an object", nothing,
         [](SweepStage& s) { return made(s, std::shared_ptr<IProvider>(buildProvider(s.handle, s.backEnd))); }, false},
        {"make by class", nothing, byClass(SweptBackEnd), false},
        {"make by factory", nothing, byFactory(SweptBackEnd), false},
        {"make by factory of an object", nothing,
         [](SweepStage& s) { return made(s, buildPhysicalFactory(s.handle, s.backEnd)->createProvider()); }, false},
        {"refuse a class that is missing", nothing, byClass("no/such/Class"), false},
        {"refuse, in a factory, a class that is missing", nothing, byFactory("no/such/Class"), false},
        {"refuse a class whose constructor throws", nothing, byClass(throwing), false}};
}

std::vector<SweepOperation> destructions() {
    return {{"destroy provider",
             [](SweepStage& stage) {
                 stage.makeProvider();
                 stage.provider->startChangeNotification(A, ignoreEvents);
             },
             [](SweepStage& stage) {
                 stage.provider.reset();
                 return std::string();
             },
             false},
            {"destroy stream",
             [](SweepStage& stage) {
                 stage.makeProvider();
                 stage.openStream();
             },
             [](SweepStage& stage) {
                 stage.stream.reset();
                 return std::string();
             },
             false}};
}

/// An operation during which the back end throws.
SweepOperation thatFails(const std::string& name, const std::string& method, const std::string& kind,
                         std::function<std::string(SweepStage&)> run) {
    return {"end in " + name,
            [](SweepStage& stage) {
                stage.makeProvider();
                stage.openStream();
            },
            [method, kind, run = std::move(run)](SweepStage& stage) {
                stage.failNext(method, kind);
                return run(stage);
            }};
}

std::vector<SweepOperation> failures() {
    const auto exists = [](SweepStage& stage) { return word(stage.provider->fileExists(A)); };
    const auto list = [](SweepStage& stage) { return namesOf(stage.provider->listAll(A)); };
    const auto read = [](SweepStage& stage) {
        std::array<char, 4> memory{};
        return std::to_string(stage.stream->read(memory.data(), memory.size()));
    };
    return {thatFails("a back end's error", "fileExists", "IN_USE", exists),
            thatFails("a back end's error of its own class", "listFolder", "own:IN_USE", list),
            thatFails("a back end's error, of a stream", "read", "IN_USE", read),
            thatFails("a bug", "fileExists", "runtime", exists),
            thatFails("a bug, of a stream", "read", "checked", read)};
}

}  // namespace

std::vector<SweepOperation> sweepOperations() {
    std::vector<SweepOperation> all = fileOperations();
    add(all, queries());
    add(all, streamOperations());
    add(all, eventOperations());
    add(all, makings());
    add(all, destructions());
    add(all, failures());
    return all;
}

}  // namespace storage::javaprovider::test
