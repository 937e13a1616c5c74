#include <gmock/gmock.h>

#include <boost/exception/exception.hpp>

#include <functional>
#include <new>

#include "BridgeTest.h"
#include "JNIUtilsEnv.h"
#include "foundation/core/except/AnonymousInternalException.h"

namespace storage::javaprovider::test {

namespace {

namespace except = foundation::core::except;
using ::testing::ElementsAre;

/// One of the two ways to ask.
struct Asking {
    const char* name;
    void (*ask)(const JNIEnvPtr& env);
};

void PrintTo(const Asking& asking, std::ostream* out) { *out << asking.name; }

class OutOfMemoryTest : public BridgeTest, public ::testing::WithParamInterface<Asking> {
protected:
    std::function<void()> ask = [this] { GetParam().ask(guard()); };

    template <class Form>
    bool isCaughtAs() {
        raise("outOfMemory");
        return throwsAs<Form>(ask);
    }
};

TEST_P(OutOfMemoryTest, NothingPendingIsNoErrorAndOneQuestion) {
    EXPECT_NO_THROW(ask());
    EXPECT_THAT(recorder.calls(), ElementsAre("ExceptionCheck"));
}

TEST_P(OutOfMemoryTest, PendingExceptionIsClearedAndThrownAsBadAlloc) {
    raise("outOfMemory");
    EXPECT_EQ(messageOf<std::bad_alloc>(ask), std::bad_alloc().what());
    EXPECT_FALSE(isAnyPending());
    EXPECT_THAT(recorder.calls(), ElementsAre("ExceptionCheck", "ExceptionClear"));
}

TEST_P(OutOfMemoryTest, ExceptionOfAnyClassCounts) {
    raise("checked", u"not about memory");
    EXPECT_THROW(ask(), std::bad_alloc);
    EXPECT_FALSE(isAnyPending());
}

TEST_P(OutOfMemoryTest, IsCaughtInEveryForm) {
    EXPECT_TRUE(isCaughtAs<except::detail::AnonymousInternalException<std::bad_alloc>>());
    EXPECT_TRUE((isCaughtAs<except::Exception<except::IInternalException, std::bad_alloc, void>>()));
    EXPECT_TRUE(isCaughtAs<except::IInternalException>());
    EXPECT_TRUE(isCaughtAs<except::IException>());
    EXPECT_TRUE(isCaughtAs<std::bad_alloc>());
    EXPECT_TRUE(isCaughtAs<std::exception>());
    EXPECT_TRUE(isCaughtAs<boost::exception>());
}

const auto Ways =
    ::testing::Values(Asking{"ThroughTheGuard", [](const JNIEnvPtr& env) { throwIfOutOfMemory(env); }},
                      Asking{"ThroughTheRawEnvironment", [](const JNIEnvPtr& env) { throwIfOutOfMemory(env.get()); }});

INSTANTIATE_TEST_SUITE_P(Bridge, OutOfMemoryTest, Ways, NameOfCase);

}  // namespace

}  // namespace storage::javaprovider::test
