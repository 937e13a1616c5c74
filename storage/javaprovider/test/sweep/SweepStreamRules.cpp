// Streams.
#include "sweep/SweepRuleParts.h"

namespace storage::javaprovider::test {

namespace {

using enum SweepRule::Way;
using Broken = SweepRule::Broken;
using Rules = std::vector<SweepRule>;

// Each operation of a stream but closing begins with the position.
const Broken NoRead = {"read", "Method read not found."};
const Broken NoWrite = {"write", "Method write not found."};
const Broken NoPosition = {"seek from here", "Method get_position not found."};
const Broken NoSize = {"seek from the end", "Method size not found."};
const Broken NoClose = {"close", "Method close not found."};

std::vector<Broken> withoutSetPosition() {
    std::vector<Broken> broken;
    for (const char* operation : {"read", "write", "seek *"}) {
        broken.push_back({operation, "Method set_position not found."});
    }
    return broken;
}

/// A method of the channel that Java lacks without saying so: what needs it fails.
Rules methods() {
    const auto lacking = [](const std::string& method, const std::vector<Broken>& broken) {
        return SweepRule{.operation = "open",
                         .call = "GetMethodID com/corvallen/storage/test/data/MemoryChannel " + method,
                         .way = Silently,
                         .text = AsEver,
                         .broken = broken};
    };
    return {
        lacking("read", {NoRead}),
        lacking("write", {NoWrite}),
        lacking("position()J", {NoPosition}),
        lacking("position(J)V", withoutSetPosition()),
        lacking("size", {NoSize}),
        lacking("close", {NoClose}),
    };
}

Rules openings() {
    std::vector<Broken> all = withoutSetPosition();
    all.push_back(NoClose);
    return {
        wantOfMemory("open", "NewGlobalRef", WithError),
        // Without an exception the stream is made, over nothing.
        {.operation = "open",
         .call = "NewGlobalRef",
         .way = Silently,
         .text = AsEver,
         .broken = {{"*", "The stream has no channel"}}},
        // JNI looks the class of an object up without a failure; were there one, no method would be found.
        {.operation = "open", .call = "GetObjectClass", .way = Silently, .text = AsEver, .broken = all},
        {.operation = "open",
         .call = "GetObjectClass",
         .way = WithError,
         .ending = Ending::InternalError,
         .text = "Method read with signature (Ljava/nio/ByteBuffer;)I not found.\n" + Injected},
    };
}

Rules transfers() {
    return {
        checked("", "CallIntMethod"),
        returns("read", "CallIntMethod", "0 "),
        returns("write", "CallIntMethod", "0"),
        returns("end in", "CallIntMethod", "0 "),
        wantOfMemory("", "NewDirectByteBuffer", WithError),
        {.operation = "end in", .call = "NewDirectByteBuffer", .way = Silently, .text = AsEver},
        {.call = "NewDirectByteBuffer",
         .way = Silently,
         .ending = Ending::InternalError,
         .text = "ProviderCallback threw an unexpected java.lang.NullPointerException. The message was: ",
         .openEnd = "the machine words it"},
    };
}

Rules seeks() {
    return {
        checked("seek", "CallLongMethod"),
        returns("seek from here", "CallLongMethod position", "1"),
        returns("seek from the end", "CallLongMethod size", "1"),
        {.call = "CallVoidMethod position", .way = Silently, .text = AsEver},
    };
}

}  // namespace

std::vector<SweepRule> streamRules() { return joined({methods(), openings(), transfers(), seeks()}); }

}  // namespace storage::javaprovider::test
