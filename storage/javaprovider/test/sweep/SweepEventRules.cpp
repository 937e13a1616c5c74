// Events in both directions.
#include "sweep/SweepRuleParts.h"

namespace storage::javaprovider::test {

namespace {

using enum SweepRule::Way;
using Rules = std::vector<SweepRule>;

std::string withoutPublisher(const std::string& told) {
    const std::string publisher = " with a publisher";
    return told.ends_with(publisher) ? told.substr(0, told.size() - publisher.size()) : told;
}

Rules requests() {
    const std::string lookUp = "GetMethodID com/corvallen/storage/provider/NativePublisher <init>";
    const std::string making = "NewObject com/corvallen/storage/provider/NativePublisher";
    return {
        {.call = "RegisterNatives", .ending = Ending::RuntimeError, .text = "Problem registering native method"},
        {.call = lookUp,
         .way = WithError,
         .ending = Ending::InternalError,
         .text = "Method NativePublisher constructor not found.\n" + Injected},
        {.call = lookUp, .way = Silently, .text = AsEver, .altered = withoutPublisher},
        checked("start", making.c_str()),
        {.operation = "start", .call = making, .way = Silently, .text = AsEver, .altered = withoutPublisher},
        // A publisher that cannot be found again is replaced by the next request.
        {.call = "NewWeakGlobalRef", .text = AsEver},
        checked("start", "NewLocalRef"),
        {.operation = "start: after the publisher is gone",
         .call = "NewLocalRef",
         .way = Silently,
         .repetition = 2,
         .text = AsEver,
         .altered = withoutPublisher},
        {.operation = "start", .call = "NewLocalRef", .way = Silently, .text = AsEver},
    };
}

Rules events() {
    const auto silent = [](std::size_t repetition, Ending ending, const char* text) {
        return SweepRule{.operation = "nativePublish",
                         .call = "GetStringChars",
                         .way = Silently,
                         .repetition = repetition,
                         .ending = ending,
                         .text = text};
    };
    return {
        silent(1, Ending::RuntimeError, "Java provider: Unknown kind."),
        silent(2, Ending::Returns, "kind 2 at  of java://test/a type 0 from me"),
        silent(3, Ending::Returns, "kind 2 at java://test of  type 0 from me"),
        silent(4, Ending::RuntimeError, "Java provider: Unknown entry type."),
        silent(5, Ending::Returns, "kind 2 at java://test of java://test/a type 0 from "),
        wantOfMemory("nativePublish", "GetStringChars", WithError),
    };
}

}  // namespace

std::vector<SweepRule> eventRules() { return joined({requests(), events()}); }

}  // namespace storage::javaprovider::test
