// What a C++ exception does that leaves the native method under Java's frames.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <string>
#include <vector>

#include "data/StreamTest.h"
#include "support/JavaHelpers.h"
#include "sweep/SweepNames.h"
#include "sweep/SweepStage.h"

namespace storage::javaprovider::test {
namespace {

class EventDeathTest : public StreamTest {
protected:
    /// Java publishes one event on a thread of its own, and the text with this number cannot be had.
    void publishWithoutMemory(std::size_t text) {
        const rlimit none = {0, 0};
        setrlimit(RLIMIT_CORE, &none);
        SweepStage stage(env(), handle);
        stage.makeProvider();
        stage.provider->startChangeNotification(SweptLocation, [](const auto&...) {});
        recorder.fail({.call = "GetStringChars", .occurrence = text, .anyThread = true});
        callStaticVoid(env(), "com/corvallen/storage/test/data/Publishers", "publishOnNewThread",
                       {"ChildAdded", "java://test", "java://test/a", "File", "me"});
    }
};

// No handler is between the native method and Java, and Java's frames let no C++ exception through.
TEST_F(EventDeathTest, EventWithoutMemoryForItsTextsEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(publishWithoutMemory(1), ::testing::KilledBySignal(SIGABRT),
                "AnonymousInternalException<std::bad_alloc>");
    EXPECT_EXIT(publishWithoutMemory(5), ::testing::KilledBySignal(SIGABRT),
                "AnonymousInternalException<std::bad_alloc>");
}

}  // namespace
}  // namespace storage::javaprovider::test
