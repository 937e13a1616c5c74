// What the making of a stream asks of Java, and how it fails.
#include <gmock/gmock.h>

#include <string>
#include <type_traits>
#include <vector>

#include "data/StreamTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* ChannelClass = "com/corvallen/storage/test/data/MemoryChannel";

static_assert(!std::is_copy_constructible_v<ProviderChannelByteStream>);
static_assert(!std::is_copy_assignable_v<ProviderChannelByteStream>);

class StreamConstructionTest : public StreamTest {
protected:
    void SetUp() override {
        StreamTest::SetUp();
        channel = channelOver("0123456789");
        recorder.clear();
    }
    void make() const { const ProviderChannelByteStream stream(handle, channel); }

    jobject channel = nullptr;
};

TEST_F(StreamConstructionTest, LooksTheSixMethodsUpInOrderAndHoldsTheChannel) {
    const ProviderChannelByteStream stream(handle, channel);
    const std::string lookup = std::string("GetMethodID ") + ChannelClass + " ";
    EXPECT_THAT(
        recorder.calls(),
        ElementsAre("PushLocalFrame", "GetObjectClass", lookup + "read(Ljava/nio/ByteBuffer;)I",
                    lookup + "write(Ljava/nio/ByteBuffer;)I", lookup + "position()J", lookup + "position(J)V",
                    lookup + "size()J", lookup + "close()V", "NewGlobalRef", "DeleteLocalRef", "PopLocalFrame"));
    EXPECT_EQ(recorder.record("GetObjectClass").target, channel);
    EXPECT_EQ(recorder.record("NewGlobalRef").target, channel);
    EXPECT_EQ(recorder.record("DeleteLocalRef").targetReference, recorder.record("GetObjectClass").resultReference);
    EXPECT_EQ(recorder.liveGlobals(), 1);
    EXPECT_THAT(javaCalls(), IsEmpty());
}

TEST_F(StreamConstructionTest, CallersReferenceStaysTheCallers) {
    make();
    const JniRecorder::Unrecorded unrecorded;
    EXPECT_EQ(env()->GetObjectRefType(channel), JNILocalRefType);
}

TEST_F(StreamConstructionTest, TakesItsOwnShareOfTheMachine) {
    EXPECT_EQ(handle.use_count(), 2) << "the provider's share and the test's";
    {
        const ProviderChannelByteStream stream(handle, channel);
        EXPECT_EQ(handle.use_count(), 3);
    }
    EXPECT_EQ(handle.use_count(), 2);
}

TEST_F(StreamConstructionTest, EmptyHandleOrRemovedMachineIsReported) {
    EXPECT_EQ(internalErrorOf([&] { const ProviderChannelByteStream stream(nullptr, channel); }), "JVM remvoed");
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { make(); }), "JVM remvoed");
    EXPECT_THAT(recorder.calls(), IsEmpty());
    handle->restore();
}

TEST_F(StreamConstructionTest, ObjectThatIsNoChannelIsReported) {
    const jobject other = newObject(env(), "java/lang/Object");
    EXPECT_THAT(internalErrorOf([&] { const ProviderChannelByteStream stream(handle, other); }),
                StartsWith("Method read with signature (Ljava/nio/ByteBuffer;)I not "
                           "found.\njava.lang.NoSuchMethodError"));
    EXPECT_EQ(recorder.liveGlobals(), 0);
}

TEST_F(StreamConstructionTest, EachMissingMethodIsReportedAndNothingIsHeld) {
    const std::vector<std::pair<std::string, std::string>> methods = {{"read", "(Ljava/nio/ByteBuffer;)I"},
                                                                      {"write", "(Ljava/nio/ByteBuffer;)I"},
                                                                      {"position", "()J"},
                                                                      {"position", "(J)V"},
                                                                      {"size", "()J"},
                                                                      {"close", "()V"}};
    for (std::size_t i = 0; i < methods.size(); ++i) {
        const auto& [name, signature] = methods[i];
        recorder.clear();
        recorder.fail({.call = std::string("GetMethodID ") + ChannelClass + " " + name + signature,
                       .failure = JniFailure::exception("java/lang/NoSuchMethodError")});
        EXPECT_EQ(internalErrorOf([&] { make(); }),
                  "Method " + name + " with signature " + signature +
                      " not found.\njava.lang.NoSuchMethodError: made to fail by a test");
        EXPECT_EQ(recorder.count(std::string("GetMethodID ") + ChannelClass), i + 1);
        EXPECT_EQ(recorder.count("NewGlobalRef") + recorder.count("DeleteGlobalRef"), 0U);
        EXPECT_EQ(recorder.liveLocals(), 0);
        EXPECT_EQ(handle.use_count(), 2) << "the half-made stream holds nothing";
    }
}

TEST_F(StreamConstructionTest, ChannelThatCannotBeHeldForWantOfMemoryIsABadAlloc) {
    recorder.fail({.call = "NewGlobalRef", .failure = JniFailure::outOfMemory()});
    EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { make(); }));
    EXPECT_EQ(recorder.count("DeleteGlobalRef"), 0U);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(handle.use_count(), 2);
}

TEST_F(StreamConstructionTest, ChannelThatIsNotHeldWithoutReasonMakesAStreamAllTheSame) {
    recorder.fail({.call = "NewGlobalRef", .failure = JniFailure::silent()});
    EXPECT_NO_THROW(make());
    EXPECT_EQ(recorder.record("DeleteGlobalRef").target, nullptr);
}

}  // namespace
}  // namespace storage::javaprovider::test
