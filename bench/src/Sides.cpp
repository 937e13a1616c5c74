#include "Sides.h"

#include "Locations.h"

namespace bench {

namespace {

constexpr std::size_t LargestTransfer = std::size_t{1} << 20;

}  // namespace

Sides::Sides(const Machine& theMachine)
    : machine(theMachine),
      provider(theMachine.makeProvider()),
      floor(theMachine.env()),
      floorErrors(floor.java()),
      floorOpen(readOnlyChannelMethod(floor.java())),
      floorStream(floor.java(), floorOpen, File.text),
      stream(provider->openReadOnlyByteStream(File.iri)),
      buffer(LargestTransfer),
      events(theMachine,
             [this](int, const std::u16string&, const std::u16string&, int, const auto&) { ++floorEvents; }) {
    provider->startChangeNotification(
        Folder.iri, [this](const auto&, const auto&, const auto&, const auto&, const auto&) { ++bridgeEvents; });
}

}  // namespace bench
