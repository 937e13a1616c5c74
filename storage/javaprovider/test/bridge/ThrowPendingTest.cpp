#include <gmock/gmock.h>

#include <boost/exception/exception.hpp>

#include <functional>
#include <stdexcept>

#include "BridgeTest.h"
#include "JNIUtilsThrow.h"
#include "foundation/core/except/AnonymousInternalException.h"

namespace storage::javaprovider::test {

namespace {

namespace except = foundation::core::except;
using ::testing::ElementsAre;
using Internal = except::detail::AnonymousInternalException<std::runtime_error>;

/// One of the ways to throw what is pending, and what its text begins with.
struct Thrower {
    const char* name;
    void (*run)(const JNIEnvPtr& env);
    const char* beginning;
};

void PrintTo(const Thrower& thrower, std::ostream* out) { *out << thrower.name; }

class ThrowPendingTest : public BridgeTest, public ::testing::WithParamInterface<Thrower> {
protected:
    std::function<void()> run = [this] { GetParam().run(guard()); };

    std::string textFor(const std::string& kind, const std::u16string& text = u"") {
        raise(kind, text);
        const std::string thrown = messageOf<Internal>(run);
        EXPECT_FALSE(isAnyPending());
        return thrown;
    }
    static std::string expected(const std::string& description) { return GetParam().beginning + description; }
};

TEST_P(ThrowPendingTest, NothingPendingIsNoErrorAndOneQuestion) {
    EXPECT_NO_THROW(run());
    EXPECT_THAT(recorder.calls(), ElementsAre("ExceptionCheck"));
}

TEST_P(ThrowPendingTest, TextEndsWithTheDescriptionOfTheException) {
    EXPECT_EQ(textFor("runtime", u"x"), expected("java.lang.IllegalStateException: x"));
}

TEST_P(ThrowPendingTest, DescriptionIsThatOfItsToString) { EXPECT_EQ(textFor("emptyToString"), expected("")); }

TEST_P(ThrowPendingTest, ProviderExceptionIsDescribedLikeAnyOther) {
    EXPECT_EQ(textFor("NOT_FOUND", u"java://a"),
              expected("com.corvallen.storage.provider.ProviderException: NOT_FOUND: java://a"));
}

TEST_P(ThrowPendingTest, DescriptionEndsBeforeAZero) {
    EXPECT_EQ(textFor("nulInMessage"), expected("java.lang.IllegalStateException: before"));
}

TEST_P(ThrowPendingTest, DescriptionBeyondAsciiIsUtf8) {
    EXPECT_EQ(textFor("nonBmpMessage"), expected("java.lang.IllegalStateException: a \xF0\x9F\x98\x80 b"));
    EXPECT_EQ(textFor("loneSurrogateMessage"), expected("java.lang.IllegalStateException: a \xEF\xBF\xBD b"));
}

TEST_P(ThrowPendingTest, MissingDescriptionIsEmpty) { EXPECT_EQ(textFor("nullToString", u"x"), expected("")); }

TEST_P(ThrowPendingTest, DescriptionThatThrowsIsEmptyAndLeavesNothingPending) {
    EXPECT_EQ(textFor("throwingToString"), expected(""));
}

TEST_P(ThrowPendingTest, IsThrownWithTheseCalls) {
    static_cast<void>(textFor("runtime", u"x"));
    EXPECT_THAT(recorder.calls(),
                ElementsAre("ExceptionCheck", "ExceptionOccurred", "ExceptionClear", "GetObjectClass",
                            "GetMethodID java/lang/IllegalStateException toString()Ljava/lang/String;",
                            "CallObjectMethod toString()Ljava/lang/String;", "GetStringChars", "ReleaseStringChars"));
}

TEST_P(ThrowPendingTest, DescriptionIsAskedOfTheException) {
    static_cast<void>(textFor("runtime", u"x"));
    const ReferenceNumber exception = recorder.record("ExceptionOccurred").resultReference;
    EXPECT_EQ(recorder.record("GetObjectClass").targetReference, exception);
    EXPECT_EQ(recorder.record("CallObjectMethod toString").targetReference, exception);
}

TEST_P(ThrowPendingTest, IsClearedBeforeItIsDescribed) {
    static_cast<void>(textFor("runtime", u"x"));
    EXPECT_FALSE(recorder.record("GetObjectClass").pendingBefore);
    EXPECT_TRUE(recorder.record("ExceptionClear").pendingBefore);
}

TEST_P(ThrowPendingTest, LeavesItsReferencesToTheFrame) {
    static_cast<void>(textFor("runtime", u"x"));
    EXPECT_EQ(recorder.count("DeleteLocalRef"), 0U);
    EXPECT_EQ(recorder.liveLocals(), 3) << "the exception, its class and its text";
}

TEST_P(ThrowPendingTest, DescriptionWithoutMemoryIsBadAlloc) {
    raise("runtime", u"x");
    recorder.fail({.call = "GetStringChars"});
    EXPECT_THROW(run(), std::bad_alloc);
    EXPECT_FALSE(isAnyPending());
}

TEST_P(ThrowPendingTest, IsCaughtInEveryForm) {
    const auto again = [this] {
        raise("runtime", u"x");
        run();
    };
    EXPECT_TRUE((throwsAs<except::Exception<except::IInternalException, std::runtime_error, void>>(again)));
    EXPECT_TRUE(throwsAs<except::IInternalException>(again));
    EXPECT_TRUE(throwsAs<except::IException>(again));
    EXPECT_TRUE(throwsAs<std::runtime_error>(again));
    EXPECT_TRUE(throwsAs<std::exception>(again));
    EXPECT_TRUE(throwsAs<boost::exception>(again));
}

INSTANTIATE_TEST_SUITE_P(
    Bridge, ThrowPendingTest,
    ::testing::Values(
        Thrower{"WithAPrefix", [](const JNIEnvPtr& env) { throwPendingJavaException(env, "Cannot do it:"); },
                "Cannot do it: "},
        Thrower{"WithABlankPrefix", [](const JNIEnvPtr& env) { throwPendingJavaException(env, " "); }, "  "},
        Thrower{"WithoutAPrefix", [](const JNIEnvPtr& env) { throwPendingJavaException(env, ""); }, ""},
        Thrower{"MethodAndSignature", [](const JNIEnvPtr& env) { throwMethodNotFound(env, "run", "(I)V"); },
                "Method run with signature (I)V not found.\n"},
        Thrower{"MethodAlone", [](const JNIEnvPtr& env) { throwMethodNotFound(env, "run"); },
                "Method run not found.\n"}),
    NameOfCase);

}  // namespace

}  // namespace storage::javaprovider::test
