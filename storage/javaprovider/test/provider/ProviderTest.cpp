#include "provider/ProviderTest.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "JavaProvider.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

/// The calls that make what operations leave to their frames on purpose.
constexpr std::array<std::string_view, 14> LeftOnPurpose = {
    // The search for a class; construction keeps what it finds by references of its own.
    "FindClass java/lang/Class", "FindClass java/lang/ClassLoader", "NewStringUTF com", "CallObjectMethod getParent",
    "CallObjectMethod getClassLoader", "CallObjectMethod loadClass", "FindClass com/corvallen/storage/provider/",
    // The back end that is made by its class.
    "FindClass com/corvallen/storage/test/", "NewObject com/corvallen/storage/test/",
    // The description of a Java error.
    "ExceptionOccurred", "GetObjectClass of ExceptionOccurred", "CallObjectMethod toString",
    // Configuration, and the publisher of events.
    "FindClass java/util/HashMap", "NewObject com/corvallen/storage/provider/NativePublisher"};

}  // namespace

void ProviderTest::SetUp() {
    RecordedJvmTest::SetUp();
    script::reset(env());
    handle = std::make_shared<FakeJVM>(jvm());
}

void ProviderTest::TearDown() {
    script::reset(env());
    expectNothingElseLeftToFrames();
    RecordedJvmTest::TearDown();
}

void ProviderTest::expectNothingElseLeftToFrames() {
    for (const std::string& left : recorder.takeLeftToFrames()) {
        const auto begins = [&left](const auto& call) { return left.starts_with(call); };
        EXPECT_TRUE(std::any_of(LeftOnPurpose.begin(), LeftOnPurpose.end(), begins) ||
                    std::any_of(m_mayBeLeft.begin(), m_mayBeLeft.end(), begins))
            << "left to a frame: " << left;
    }
}

void ProviderTest::expectClassFoundInstantiatedAndHandedOver() const {
    const auto calls = recorder.calls();
    ASSERT_GE(calls.size(), 6U);
    EXPECT_THAT(std::vector(calls.begin(), calls.begin() + 6),
                ::testing::ElementsAre("PushLocalFrame", std::string("FindClass ") + ScriptedProviderClass,
                                       std::string("GetMethodID ") + ScriptedProviderClass + " <init>()V",
                                       std::string("NewObject ") + ScriptedProviderClass + " <init>()V",
                                       "PushLocalFrame", "GetObjectClass"));
    EXPECT_EQ(recorder.record("GetObjectClass").targetReference, recorder.record("NewObject").resultReference);
}

jobject ProviderTest::newBackEnd() const {
    const JniRecorder::Unrecorded unrecorded;
    return newObject(env(), ScriptedProviderClass);
}

std::unique_ptr<IProvider> ProviderTest::makeProvider() {
    const JniRecorder::Unrecorded unrecorded;
    jobject backEnd = newBackEnd();
    auto provider = std::make_unique<JavaProvider>(handle, backEnd);
    env()->DeleteLocalRef(backEnd);
    return provider;
}

}  // namespace storage::javaprovider::test
