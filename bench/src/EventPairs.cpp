#include <stdexcept>

#include "Pairs.h"

namespace bench {

namespace {

/// How many events one call of Java publishes, so that the call itself does not count.
constexpr jint EventsPerCall = 1000;

void requireArrived(std::uint64_t before, std::uint64_t after) {
    if (after - before != EventsPerCall) {
        throw std::runtime_error("events got lost");
    }
}

}  // namespace

std::vector<Pair> eventPairs(Sides& sides) {
    JNIEnv* env = sides.machine.env();
    jclass source = sides.machine.holdClass("com/corvallen/bench/EventSource");
    jmethodID toFloor =
        env->GetStaticMethodID(source, "publishToFloor", "(Lcom/corvallen/storage/provider/FloorPublisher;I)V");
    jmethodID toBridge = env->GetStaticMethodID(source, "publishToBridge", "(I)V");
    const auto floor = [&sides, env, source, toFloor] {
        const std::uint64_t before = sides.floorEvents;
        env->CallStaticVoidMethod(source, toFloor, sides.events.publisher(), EventsPerCall);
        requireArrived(before, sides.floorEvents);
    };
    const auto bridge = [&sides, env, source, toBridge] {
        const std::uint64_t before = sides.bridgeEvents;
        env->CallStaticVoidMethod(source, toBridge, EventsPerCall);
        requireArrived(before, sides.bridgeEvents);
    };
    return {{"event", "events", 1.15, EventsPerCall, operation(floor), operation(bridge)}};
}

}  // namespace bench
