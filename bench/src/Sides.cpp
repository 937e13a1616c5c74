#include "Sides.h"

#include "Locations.h"

namespace bench {

namespace {

constexpr std::size_t LargestTransfer = std::size_t{1} << 20;

}  // namespace

Floors::Floors(const Machine& machine, Lookups lookups)
    : provider(machine.jvm(), lookups), errors(provider.java()), stream(openReadOnly(provider.java(), File.text)) {}

Sides::Sides(const Machine& theMachine)
    : machine(theMachine),
      provider(theMachine.makeProvider()),
      stream(provider->openReadOnlyByteStream(File.iri)),
      floor(theMachine, Lookups::PerCall),
      bare(theMachine, Lookups::Kept),
      buffer(LargestTransfer),
      events(theMachine,
             [this](int, const std::u16string&, const std::u16string&, int, const auto&) { ++floorEvents; }) {
    provider->startChangeNotification(
        Folder.iri, [this](const auto&, const auto&, const auto&, const auto&, const auto&) { ++bridgeEvents; });
}

}  // namespace bench
