// Making providers and destroying them, and operations in which the back end throws.
#include <utility>

#include "JavaProvider.h"
#include "storage/javaprovider/EntryPoints.h"
#include "sweep/SweepNames.h"
#include "sweep/SweepOperations.h"
#include "sweep/SweepResults.h"

namespace storage::javaprovider::test {

namespace {

using foundation::storage::provider::IProvider;
using foundation::storage::provider::PhysicalProviderFactory;
using Uses = SweepOperation::Uses;
using Maker = std::function<std::shared_ptr<IProvider>(SweepStage&)>;

SweepOperation making(const std::string& name, Maker make) {
    return {name, [](SweepStage&) {},
            [make = std::move(make)](SweepStage& stage) {
                stage.provider = make(stage);
                return std::string("made");
            },
            Uses::Nothing,
            /*repeatable=*/false};
}

Maker byClass(const char* name) {
    return [name](SweepStage& s) { return std::shared_ptr<IProvider>(buildProvider(s.handle, name)); };
}

Maker byFactory(const char* name) {
    return [name](SweepStage& s) { return buildPhysicalFactory(s.handle, name)->createProvider(); };
}

/// By the entry point that has a plain name.
Maker byPlainFactory(const char* name) {
    return [name](SweepStage& s) {
        std::shared_ptr<PhysicalProviderFactory> factory;
        buildPhysicalFactory_V1(s.handle, name, factory);
        return factory->createProvider();
    };
}

void makeAll(SweepStage& stage) {
    stage.makeProvider();
    stage.openStream();
}

/// An operation during which the back end throws.
SweepOperation thatFails(const std::string& name, const std::string& method, const std::string& kind,
                         std::function<std::string(SweepStage&)> run) {
    return {"end in " + name, makeAll, [method, kind, run = std::move(run)](SweepStage& stage) {
                stage.failNext(method, kind);
                return run(stage);
            }};
}

}  // namespace

std::vector<SweepOperation> sweptMakings() {
    return {making("make over an object",
                   [](SweepStage& s) { return std::shared_ptr<IProvider>(buildProvider(s.handle, s.backEnd)); }),
            making("make by class", byClass(SweptBackEnd)),
            making("make by factory", byFactory(SweptBackEnd)),
            making("make by plain factory", byPlainFactory(SweptBackEnd)),
            making("make by factory of an object",
                   [](SweepStage& s) { return buildPhysicalFactory(s.handle, s.backEnd)->createProvider(); }),
            making("refuse a class that is missing", byClass("no/such/Class")),
            making("refuse, in a factory, a class that is missing", byFactory("no/such/Class")),
            making("refuse a class whose constructor throws", byClass(ThrowingBackEnd)),
            making("refuse, in a factory, a class whose constructor throws", byFactory(ThrowingBackEnd))};
}

std::vector<SweepOperation> sweptDestructions() {
    const auto startNotification = [](SweepStage& stage) {
        stage.makeProvider();
        stage.provider->startChangeNotification(SweptLocation, [](const auto&...) {});
    };
    const auto destroyProvider = [](SweepStage& stage) {
        stage.provider.reset();
        return std::string();
    };
    const auto destroyStream = [](SweepStage& stage) {
        stage.stream.reset();
        return std::string();
    };
    return {{"destroy provider", startNotification, destroyProvider, Uses::Nothing, /*repeatable=*/false},
            {"destroy stream", makeAll, destroyStream, Uses::Nothing, /*repeatable=*/false}};
}

std::vector<SweepOperation> sweptFailures() {
    const auto exists = [](SweepStage& stage) { return word(stage.provider->fileExists(SweptLocation)); };
    const auto list = [](SweepStage& stage) { return namesOf(stage.provider->listAll(SweptLocation)); };
    const auto read = [](SweepStage& stage) { return bytesOf(*stage.stream); };
    return {thatFails("a back end's error", "fileExists", "IN_USE", exists),
            thatFails("an error of the back end's own class", "listFolder", "own:IN_USE", list),
            thatFails("a back end's error, of a stream", "read", "IN_USE", read),
            thatFails("a bug", "fileExists", "runtime", exists),
            thatFails("a bug, of a stream", "read", "checked", read)};
}

}  // namespace storage::javaprovider::test
