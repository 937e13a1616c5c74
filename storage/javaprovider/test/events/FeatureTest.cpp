// Which features are asked of Java, and what its answer is worth.
#include <gmock/gmock.h>

#include <ostream>
#include <string>
#include <vector>

#include "data/Traces.h"
#include "foundation/storage/provider/ExtendedFeature.h"
#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ExtendedFeature;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class FeatureTest : public ProviderTest {
protected:
    void SetUp() override {
        ProviderTest::SetUp();
        provider = makeProvider();
        recorder.clear();
    }
    [[nodiscard]] bool has(int feature) const { return provider->hasFeature(static_cast<ExtendedFeature>(feature)); }

    std::unique_ptr<IProvider> provider;
};

// ---- features that Java knows ----

struct KnownFeature {
    int number;
    const char* javaName;

    friend void PrintTo(const KnownFeature& feature, std::ostream* out) { *out << feature.number; }
};

class KnownFeatureTest : public FeatureTest, public ::testing::WithParamInterface<KnownFeature> {
protected:
    [[nodiscard]] bool has() const { return FeatureTest::has(GetParam().number); }
};

TEST_P(KnownFeatureTest, IsAskedOfJavaByItsName) {
    static_cast<void>(has());
    EXPECT_THAT(javaCalls(), ElementsAre(std::string("hasFeature ") + GetParam().javaName));
}

TEST_P(KnownFeatureTest, IsWhatJavaSays) {
    script::answer(env(), "hasFeature", true);
    EXPECT_TRUE(has());
    script::answer(env(), "hasFeature", false);
    EXPECT_FALSE(has());
}

TEST_P(KnownFeatureTest, TakesExactlyTheseCallsEachTime) {
    const std::string field = std::string("com/corvallen/storage/provider/ExtendedFeature ") + GetParam().javaName;
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        static_cast<void>(has());
        EXPECT_THAT(recorder.calls(),
                    ElementsAre("PushLocalFrame",
                                "GetStaticFieldID " + field + " Lcom/corvallen/storage/provider/ExtendedFeature;",
                                "GetStaticObjectField " + field,
                                "CallBooleanMethod hasFeature(Lcom/corvallen/storage/provider/ExtendedFeature;)Z",
                                "DeleteLocalRef", "PopLocalFrame"));
        const auto constant = recorder.record("GetStaticObjectField").resultReference;
        EXPECT_EQ(recorder.record("CallBooleanMethod").referenceArgument(0), constant);
        EXPECT_EQ(recorder.record("DeleteLocalRef").targetReference, constant);
    }
}

INSTANTIATE_TEST_SUITE_P(Features, KnownFeatureTest,
                         ::testing::Values(KnownFeature{0, "RecursiveFolderRemoval"},
                                           KnownFeature{3, "RecursiveChangeEvents"},
                                           KnownFeature{6, "AllowsMovesAndDeletesWhenOpen"},
                                           KnownFeature{7, "AllowsMovesAndDeletesWhenOpenReadOnly"}),
                         [](const auto& tested) { return std::string(tested.param.javaName); });

// ---- features that it does not ----

class UnknownFeatureTest : public FeatureTest, public ::testing::WithParamInterface<int> {};

TEST_P(UnknownFeatureTest, IsDeniedWithoutAskingJava) {
    script::answer(env(), "hasFeature", true);
    EXPECT_FALSE(has(GetParam()));
    EXPECT_THAT(recorder.calls({.localFrames = false}), IsEmpty());
    EXPECT_THAT(javaCalls(), IsEmpty());
}

TEST_P(UnknownFeatureTest, NeedsAMachineAllTheSame) {
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { static_cast<void>(has(GetParam())); }), "JVM remvoed");
    handle->restore();
}

INSTANTIATE_TEST_SUITE_P(Features, UnknownFeatureTest, ::testing::Values(-1, 1, 2, 4, 5, 8, 99, 2147483647),
                         [](const auto& tested) { return "Number" + std::to_string(tested.index); });

// ---- failures ----

TEST_F(FeatureTest, ExceptionOfJavaIsADenialAndStaysPending) {
    script::answer(env(), "hasFeature", true);
    script::failNext(env(), "hasFeature", "runtime", "do not ask");
    recorder.clear();
    EXPECT_FALSE(has(0));
    EXPECT_EQ(recorder.count("ExceptionCheck") + recorder.count("ExceptionOccurred") + recorder.count("ExceptionClear"),
              0U);
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(takePendingException(env()), "java.lang.IllegalStateException: do not ask");
}

TEST_F(FeatureTest, ProviderExceptionOfJavaStaysPendingToo) {
    script::failNext(env(), "hasFeature", "UNAVAILABLE", "java://test/a");
    EXPECT_NO_THROW(EXPECT_FALSE(has(7)));
    EXPECT_THAT(takePendingException(env()), HasSubstr("ProviderException"));
}

TEST_F(FeatureTest, PendingExceptionGoesWithAThreadThatIsDetached) {
    script::failNext(env(), "hasFeature", "runtime", "do not ask");
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    onFreshThread([&] { EXPECT_FALSE(has(0)); });
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(handle->attachments() == handle->detachments());
}

TEST_F(FeatureTest, FailureOfTheLookupStaysPendingAndIsADenial) {
    recorder.fail({.call = "GetStaticFieldID", .failure = JniFailure::exception("java/lang/NoSuchFieldError")});
    // The machine does not survive a field that is null, so the second call is kept from it.
    recorder.fail({.call = "GetStaticObjectField", .failure = JniFailure::exception("java/lang/NoSuchFieldError")});
    EXPECT_FALSE(has(0));
    EXPECT_EQ(recorder.count("CallBooleanMethod"), 0U);
    EXPECT_EQ(recorder.count("ExceptionClear"), 0U);
    EXPECT_EQ(takePendingException(env()), "java.lang.NoSuchFieldError: made to fail by a test");
}

TEST_F(FeatureTest, ConstantThatIsNullIsADenialThatIsNotAsked) {
    script::answer(env(), "hasFeature", true);
    recorder.fail({.call = "GetStaticObjectField", .failure = JniFailure::silent()});
    EXPECT_FALSE(has(3));
    EXPECT_EQ(recorder.count("CallBooleanMethod") + recorder.count("DeleteLocalRef"), 0U);
}

TEST_F(FeatureTest, RemovedMachineIsReportedBeforeAnythingElse) {
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { static_cast<void>(has(0)); }), "JVM remvoed");
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    handle->restore();
}

// ---- traces ----

TEST_F(FeatureTest, IsTracedOnceWhateverTheFeature) {
    for (const int feature : {0, 1}) {
        const auto places = traced([&] { static_cast<void>(has(feature)); });
        ASSERT_EQ(places.size(), 2U);
        EXPECT_EQ(places[0].severity, 32U);
        EXPECT_THAT(places[0].text, HasSubstr("storage::javaprovider::JavaProvider::doHasFeature("));
        EXPECT_EQ(places[0].file, "storage/javaprovider/src/JavaProvider");
        EXPECT_EQ(places[1].severity, 64U);
        EXPECT_EQ(places[1].text, places[0].text);
    }
}

TEST_F(FeatureTest, RemovedMachineIsTracedAsAThrow) {
    handle->remove();
    const auto places = traced([&] { static_cast<void>(has(0)); });
    ASSERT_EQ(places.size(), 2U);
    EXPECT_EQ(places[1].text, places[0].text + " [throw]");
    handle->restore();
}

}  // namespace
}  // namespace storage::javaprovider::test
