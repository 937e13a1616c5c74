// Events: requests for them, and their way from Java to the callback.
#include <boost/property_tree/ptree.hpp>

#include <cstdint>
#include <sstream>

#include "JavaProviderEvents.h"
#include "sweep/SweepNames.h"
#include "sweep/SweepOperations.h"

namespace storage::javaprovider::test {

namespace {

using foundation::storage::provider::ChangeCallback;
using Uses = SweepOperation::Uses;

const ChangeCallback ignoreEvents = [](const auto&...) {};

/// The calls that the back end receives, and whether it got a publisher.
std::string requested(SweepStage& stage, const std::function<void()>& request) {
    const std::string told = stage.told(request);
    return told + (!told.empty() && stage.gavePublisher() ? " with a publisher" : "");
}

std::string start(SweepStage& stage) {
    return requested(stage, [&] { stage.provider->startChangeNotification(OtherLocation, ignoreEvents); });
}

std::string startOnParent(SweepStage& stage) {
    return requested(stage, [&] { stage.provider->startChangeNotificationOnParent(SweptLocation, ignoreEvents); });
}

std::string stop(SweepStage& stage) {
    return stage.told([&] { stage.provider->stopChangeNotification(SweptLocation); });
}

void started(SweepStage& stage) {
    stage.makeProvider();
    stage.provider->startChangeNotification(SweptLocation, ignoreEvents);
}

void startedInVain(SweepStage& stage) {
    started(stage);
    stage.collectPublishers();
}

/// The function that Java calls as nativePublish, called from C++ on this thread: what it throws can be caught here,
/// while under Java's frames it would end the process.
std::string publishNatively(SweepStage& stage) {
    std::ostringstream got;
    const ChangeCallback note = [&got](const auto& kind, const auto& first, const auto& second, const auto& type,
                                       const auto& details) {
        const auto narrow = [](const std::u16string& text) { return std::string(text.begin(), text.end()); };
        got << "kind " << static_cast<int>(kind) << " at " << narrow(first.text()) << " of " << narrow(second.text())
            << " type " << static_cast<int>(type) << " from " << details.template get<std::string>("originId");
    };
    const auto handle = static_cast<jlong>(reinterpret_cast<std::uintptr_t>(&note));
    nativePublishImpl(stage.env, nullptr, handle, stage.text(u"ChildAdded"), stage.text(u"java://test"),
                      stage.text(u"java://test/a"), stage.text(u"File"), stage.text(u"me"));
    return got.str();
}

}  // namespace

std::vector<SweepOperation> sweptEventOperations() {
    return {{"start: the first", &SweepStage::makeProvider, start, Uses::Provider},
            {"start: a later one", started, start},
            {"start: after the publisher is gone", startedInVain, start},
            {"start: on the parent", &SweepStage::makeProvider, startOnParent, Uses::Provider},
            {"stop", started, stop, Uses::Provider},
            {"nativePublish", [](SweepStage&) {}, publishNatively}};
}

}  // namespace storage::javaprovider::test
