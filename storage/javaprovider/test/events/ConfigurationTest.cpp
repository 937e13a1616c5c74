// The one setting that reaches Java.
#include <gmock/gmock.h>

#include <boost/property_tree/ptree.hpp>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "JavaProvider.h"
#include "data/References.h"
#include "data/Traces.h"
#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using boost::property_tree::ptree;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::IConfigurableProvider;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* Setting = "gds.enableContentCache";

ptree with(const std::string& value) {
    ptree settings;
    settings.put(Setting, value);
    return settings;
}

class ConfigurationTest : public ProviderTest {
protected:
    void SetUp() override {
        ProviderTest::SetUp();
        provider = makeConfigurable();
        recorder.clear();
    }

    [[nodiscard]] std::unique_ptr<IConfigurableProvider> makeConfigurable() {
        const JniRecorder::Unrecorded unrecorded;
        return std::make_unique<JavaProvider>(handle, newBackEnd());
    }
    void configure(const ptree& settings) const { provider->configure(settings); }

    [[nodiscard]] std::vector<ReferenceNumber> resultsOf(const std::string& pattern) const {
        return test::resultsOf(recorder, pattern);
    }
    [[nodiscard]] std::vector<ReferenceNumber> released() const { return releasedLocals(recorder); }

    std::unique_ptr<IConfigurableProvider> provider;
};

// ---- what arrives ----

TEST_F(ConfigurationTest, SettingArrivesAsOneEntryOfTexts) {
    configure(with("true"));
    EXPECT_THAT(javaCalls(), ElementsAre("configure {gds.enableContentCache=true}"));
}

TEST_F(ConfigurationTest, TextIsPassedOnAsItIs) {
    configure(with("  FALSE 0x1 "));
    EXPECT_THAT(javaCalls(), ElementsAre("configure {gds.enableContentCache=  FALSE 0x1 }"));
}

TEST_F(ConfigurationTest, TextBeyondAsciiIsReadAsUtf8) {
    configure(with("\u00e4\u20ac\U0001F600"));
    EXPECT_THAT(javaCalls(), ElementsAre("configure {gds.enableContentCache=\u00e4\u20ac\U0001F600}"));
}

TEST_F(ConfigurationTest, EmptyTextIsANullValue) {
    configure(with(""));
    EXPECT_THAT(javaCalls(), ElementsAre("configure {gds.enableContentCache=null}"));
    EXPECT_THAT(recorder.calls({.only = "NewString"}), ElementsAre("NewString gds.enableContentCache"));
    EXPECT_EQ(recorder.record("CallObjectMethod put").objectArgument(1), nullptr);
}

TEST_F(ConfigurationTest, OtherSettingsAreNeverForwarded) {
    ptree settings = with("true");
    settings.put("gds.other", "x");
    settings.put("other", "y");
    settings.put("gds.enableContentCache.below", "z");
    settings.put("enableContentCache", "w");
    configure(settings);
    EXPECT_THAT(javaCalls(), ElementsAre("configure {gds.enableContentCache=true}"));
}

TEST_F(ConfigurationTest, FirstOfSeveralIsTheOne) {
    ptree group;
    group.add("enableContentCache", "first");
    group.add("enableContentCache", "second");
    ptree settings;
    settings.add_child("gds", group);
    configure(settings);
    EXPECT_THAT(javaCalls(), ElementsAre("configure {gds.enableContentCache=first}"));
}

TEST_F(ConfigurationTest, EachConfigurationIsForwarded) {
    configure(with("true"));
    configure(with("true"));
    configure(with("false"));
    EXPECT_THAT(javaCalls(),
                ElementsAre("configure {gds.enableContentCache=true}", "configure {gds.enableContentCache=true}",
                            "configure {gds.enableContentCache=false}"));
}

// ---- nothing to say ----

class NothingToConfigureTest : public ConfigurationTest {
protected:
    /// Nothing is done, with and without a machine.
    void expectNothingFor(const ptree& settings) {
        const auto lookups = handle->lookups();
        configure(settings);
        handle->remove();
        EXPECT_NO_THROW(configure(settings));
        handle->restore();
        EXPECT_EQ(handle->lookups(), lookups) << "the machine is not asked for";
        EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
        EXPECT_THAT(javaCalls(), IsEmpty());
    }
};

TEST_F(NothingToConfigureTest, EmptyTreeDoesNothing) { expectNothingFor({}); }

TEST_F(NothingToConfigureTest, GroupWithoutTheSettingDoesNothing) {
    ptree settings;
    settings.put("gds", "text");
    expectNothingFor(settings);
    settings.put("gds.other", "x");
    expectNothingFor(settings);
}

TEST_F(NothingToConfigureTest, SettingElsewhereDoesNothing) {
    ptree settings;
    settings.put("enableContentCache", "true");
    settings.put("other.gds.enableContentCache", "true");
    settings.put("gds.enablecontentcache", "true");
    expectNothingFor(settings);
}

TEST_F(NothingToConfigureTest, NameWithADotIsNoPath) {
    ptree settings;
    settings.push_back({Setting, ptree("true")});
    expectNothingFor(settings);
}

// ---- calls ----

TEST_F(ConfigurationTest, MakesExactlyTheseCallsEachTime) {
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        configure(with("true"));
        EXPECT_THAT(recorder.calls(),
                    ElementsAre("PushLocalFrame", "FindClass java/util/HashMap",
                                "GetMethodID java/util/HashMap <init>()V", "NewObject java/util/HashMap <init>()V",
                                "GetMethodID java/util/HashMap "
                                "put(Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/Object;",
                                "NewString gds.enableContentCache", "NewString true",
                                "CallObjectMethod put(Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/Object;",
                                "ExceptionCheck", "CallVoidMethod configure(Ljava/util/HashMap;)V", "DeleteLocalRef",
                                "ExceptionCheck", "DeleteLocalRef", "DeleteLocalRef", "PopLocalFrame"));
    }
}

TEST_F(ConfigurationTest, MapGetsKeyAndValueAndGoesToJava) {
    configure(with("true"));
    const auto map = resultsOf("NewObject").at(0);
    const auto strings = resultsOf("NewString");
    const auto put = recorder.record("CallObjectMethod put");
    EXPECT_EQ(put.targetReference, map);
    EXPECT_EQ(put.referenceArgument(0), strings.at(0));
    EXPECT_EQ(put.referenceArgument(1), strings.at(1));
    EXPECT_EQ(recorder.record("CallVoidMethod configure").referenceArgument(0), map);
    EXPECT_THAT(released(), ElementsAre(map, strings.at(1), strings.at(0)));
}

TEST_F(ConfigurationTest, ClassIsTheOneReferenceLeftToTheFrame) {
    configure(with("true"));
    EXPECT_THAT(released(), Not(Contains(resultsOf("FindClass").at(0))));
}

TEST_F(ConfigurationTest, WorksOnAThreadThatJavaDoesNotKnow) {
    onFreshThread([&] { configure(with("true")); });
    EXPECT_THAT(javaCalls(), ElementsAre("configure {gds.enableContentCache=true}"));
    EXPECT_EQ(handle->attachments(), handle->detachments());
}

// ---- failures ----

TEST_F(ConfigurationTest, ProviderExceptionBecomesTheFrameworksError) {
    script::failNext(env(), "configure", "NOT_SUPPORTED", "java://test/a");
    const auto error = thrownBy<ProviderError>([&] { configure(with("true")); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::NotSupported);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_F(ConfigurationTest, AnyOtherExceptionIsAnInternalError) {
    script::failNext(env(), "configure", "runtime", "a bug");
    EXPECT_EQ(internalErrorOf([&] { configure(with("true")); }),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: a bug");
}

TEST_F(ConfigurationTest, MapIsReleasedBeforeTheExceptionIsLookedFor) {
    script::failNext(env(), "configure", "NOT_FOUND", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { configure(with("true")); }));
    const auto calls = recorder.records();
    const auto configured = std::find_if(calls.begin(), calls.end(),
                                         [](const JniCall& call) { return call.matches("CallVoidMethod configure"); });
    ASSERT_GE(calls.end() - configured, 3);
    EXPECT_EQ(configured[1].targetReference, resultsOf("NewObject java/util/HashMap").at(0));
    EXPECT_EQ(configured[2].name(), "ExceptionCheck");
    const auto order = released();
    const auto strings = resultsOf("NewString gds.enableContentCache");
    EXPECT_EQ(order.back(), strings.at(0)) << "the key goes last";
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_F(ConfigurationTest, ExceptionOfTheMapIsReportedAndJavaIsNotConfigured) {
    recorder.fail({.call = "CallObjectMethod put", .failure = JniFailure::outOfMemory()});
    EXPECT_EQ(internalErrorOf([&] { configure(with("true")); }),
              "ProviderCallback threw an unexpected java.lang.OutOfMemoryError. The message was: made to fail by a "
              "test");
    EXPECT_THAT(javaCalls(), IsEmpty());
    const auto strings = recorder.records({.only = "NewString"});
    ASSERT_EQ(strings.size(), 2U);
    const auto order = released();
    ASSERT_GE(order.size(), 3U);
    EXPECT_THAT(std::vector<ReferenceNumber>(order.end() - 3, order.end()),
                ElementsAre(strings[1].resultReference, strings[0].resultReference,
                            resultsOf("NewObject java/util/HashMap").at(0)));
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_F(ConfigurationTest, StringsThatCannotBeMadeAreABadAlloc) {
    for (const std::size_t occurrence : {1U, 2U}) {
        recorder.clear();
        recorder.fail({.call = "NewString", .occurrence = occurrence, .failure = JniFailure::outOfMemory()});
        EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { configure(with("true")); }));
        EXPECT_EQ(recorder.liveLocals(), 0);
    }
    EXPECT_THAT(javaCalls(), IsEmpty());
}

TEST_F(ConfigurationTest, RemovedMachineIsReported) {
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { configure(with("true")); }), "JVM remvoed");
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    handle->restore();
}

TEST_F(ConfigurationTest, WorksAgainAfterAFailure) {
    script::failNext(env(), "configure", "runtime", "a bug");
    EXPECT_TRUE(throwsExactly<InternalError>([&] { configure(with("true")); }));
    EXPECT_NO_THROW(configure(with("true")));
}

TEST_F(ConfigurationTest, IsNotTraced) {
    EXPECT_THAT(traced([&] { configure(with("true")); }), IsEmpty());
}

}  // namespace
}  // namespace storage::javaprovider::test
