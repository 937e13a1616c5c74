// Opening a file's bytes: what becomes of the options, and of the channel that Java gives.
#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "data/StreamTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ByteStreamOpenOptions;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::StartsWith;

class OpenStreamTest : public StreamTest {
protected:
    void SetUp() override {
        StreamTest::SetUp();
        tell("open", {"content"});
        recorder.clear();
    }

    void open(const ByteStreamOpenOptions& options = {}) const {
        static_cast<void>(provider->openByteStream(location, options));
    }
    void openReadOnly() const { static_cast<void>(provider->openReadOnlyByteStream(location)); }

    /// Options with these numbers in their second, third and fourth field.
    [[nodiscard]] static ByteStreamOpenOptions optionsOf(std::int32_t creation, std::int32_t content,
                                                         std::int32_t sharing) {
        ByteStreamOpenOptions options;
        options.creation = static_cast<ByteStreamOpenOptions::Creation>(creation);
        options.content = static_cast<ByteStreamOpenOptions::Content>(content);
        options.sharing = static_cast<ByteStreamOpenOptions::Sharing>(sharing);
        return options;
    }

    /// The last three arguments of "getChannel" for these options.
    [[nodiscard]] std::vector<bool> flagsFor(const ByteStreamOpenOptions& options) {
        recorder.clear();
        open(options);
        const auto call = recorder.record("CallObjectMethod getChannel");
        return {call.booleanArgument(1), call.booleanArgument(2), call.booleanArgument(3)};
    }
};

/// The calls of opening: the question, and what the making of the stream adds.
std::vector<std::string> opening(const std::string& question) {
    const std::string lookup = "GetMethodID com/corvallen/storage/test/data/MemoryChannel ";
    return joined(
        {{"PushLocalFrame"},
         makingOfUri("java://test/a"),
         {question, "ExceptionCheck", "PushLocalFrame", "GetObjectClass", lookup + "read(Ljava/nio/ByteBuffer;)I",
          lookup + "write(Ljava/nio/ByteBuffer;)I", lookup + "position()J", lookup + "position(J)V", lookup + "size()J",
          lookup + "close()V", "NewGlobalRef", "DeleteLocalRef", "PopLocalFrame", "DeleteLocalRef", "DeleteLocalRef",
          "PopLocalFrame"}});
}

// ---- options ----

TEST_F(OpenStreamTest, FieldThatIsZeroIsTrueInFieldOrder) {
    for (const std::int32_t a : {0, 1}) {
        for (const std::int32_t b : {0, 1}) {
            for (const std::int32_t c : {0, 1}) {
                EXPECT_THAT(flagsFor(optionsOf(a, b, c)), ElementsAre(a == 0, b == 0, c == 0));
            }
        }
    }
}

TEST_F(OpenStreamTest, AnyOtherNumberIsFalse) {
    for (const std::int32_t odd :
         {2, -1, 256, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}) {
        EXPECT_THAT(flagsFor(optionsOf(odd, 0, 0)), ElementsAre(false, true, true)) << odd;
        EXPECT_THAT(flagsFor(optionsOf(0, odd, 0)), ElementsAre(true, false, true)) << odd;
        EXPECT_THAT(flagsFor(optionsOf(0, 0, odd)), ElementsAre(true, true, false)) << odd;
    }
}

TEST_F(OpenStreamTest, FirstFieldDoesNotMatter) {
    auto options = optionsOf(0, 1, 0);
    options.bufferSize = 4096;
    EXPECT_THAT(flagsFor(options), ElementsAre(true, false, true));
    options.bufferSize = 0;
    EXPECT_THAT(flagsFor(options), ElementsAre(true, false, true));
}

TEST_F(OpenStreamTest, DefaultOptionsDestroyNothing) {
    open();
    EXPECT_THAT(javaCalls(), ElementsAre("getChannel java://test/a false false false"));
}

TEST_F(OpenStreamTest, NamesOfTheOptionsAreCreateTruncateExclusive) {
    using Options = ByteStreamOpenOptions;
    open({0, Options::Creation::CreateIfMissing, Options::Content::Preserve, Options::Sharing::Shared});
    open({0, Options::Creation::OpenExisting, Options::Content::Truncate, Options::Sharing::Shared});
    open({0, Options::Creation::OpenExisting, Options::Content::Preserve, Options::Sharing::Exclusive});
    EXPECT_THAT(javaCalls(),
                ElementsAre("getChannel java://test/a true false false", "getChannel java://test/a false true false",
                            "getChannel java://test/a false false true"));
}

// ---- calls ----

TEST_F(OpenStreamTest, OpeningMakesExactlyTheseCalls) {
    const auto stream = provider->openByteStream(location, {});
    EXPECT_THAT(recorder.calls(),
                ElementsAreArray(opening("CallObjectMethod getChannel(Lcom/corvallen/storage/provider/"
                                         "StorageURI;ZZZ)Lcom/corvallen/storage/provider/ProviderChannel;")));
}

TEST_F(OpenStreamTest, OpeningForReadingMakesExactlyTheseCalls) {
    const auto stream = provider->openReadOnlyByteStream(location);
    EXPECT_THAT(recorder.calls(),
                ElementsAreArray(opening("CallObjectMethod getReadOnlyChannel(Lcom/corvallen/storage/provider/"
                                         "StorageURI;)Lcom/corvallen/storage/provider/ProviderChannel;")));
    EXPECT_THAT(javaCalls(), ElementsAre("getReadOnlyChannel java://test/a"));
}

TEST_F(OpenStreamTest, StreamIsOverTheChannelThatJavaGave) {
    const auto stream = provider->openByteStream(location, {});
    EXPECT_NE(dynamic_cast<ProviderChannelByteStream*>(stream.get()), nullptr);
    EXPECT_EQ(recorder.record("NewGlobalRef").targetReference,
              recorder.record("CallObjectMethod getChannel").resultReference);
    std::array<char, 7> memory{};
    EXPECT_EQ(stream->read(memory.data(), 7), 7);
    EXPECT_EQ(std::string(memory.data(), 7), "content");
}

TEST_F(OpenStreamTest, ReleasesTheChannelAndThenTheLocation) {
    const auto stream = provider->openByteStream(location, {});
    const auto released = recorder.records({.only = "DeleteLocalRef"});
    ASSERT_GE(released.size(), 2U);
    EXPECT_EQ(released[released.size() - 2].targetReference,
              recorder.record("CallObjectMethod getChannel").resultReference);
    EXPECT_EQ(released.back().targetReference, recorder.record("NewObject").resultReference);
    EXPECT_EQ(recorder.liveGlobals(), 1) << "the stream's own";
}

TEST_F(OpenStreamTest, StreamHoldsItsOwnShareOfTheMachine) {
    const auto stream = provider->openByteStream(location, {});
    EXPECT_EQ(handle.use_count(), 3);
    provider.reset();
    EXPECT_EQ(handle.use_count(), 2);
}

TEST_F(OpenStreamTest, IsNotTracedItself) {
    for (const TracedPlace& place : traced([&] { open(); })) {
        EXPECT_EQ(place.text.find("OpenByteStream"), std::string::npos) << place.text;
    }
}

// ---- failures of the stream's making ----

class HalfMadeStreamTest : public OpenStreamTest, public ::testing::WithParamInterface<bool> {
protected:
    void run() const { GetParam() ? openReadOnly() : open(); }
    [[nodiscard]] static std::string question() {
        return GetParam() ? "CallObjectMethod getReadOnlyChannel" : "CallObjectMethod getChannel";
    }
    void expectNothingLeft() const {
        const auto released = recorder.records({.only = "DeleteLocalRef"});
        ASSERT_GE(released.size(), 2U);
        EXPECT_EQ(released[released.size() - 2].targetReference, recorder.record(question()).resultReference);
        EXPECT_EQ(released.back().targetReference, recorder.record("NewObject").resultReference);
        EXPECT_EQ(recorder.liveLocals(), 0);
        EXPECT_EQ(recorder.liveGlobals(), 0);
        EXPECT_EQ(handle.use_count(), 2) << "the half-made stream holds nothing";
    }
};

TEST_P(HalfMadeStreamTest, MissingMethodIsReportedAndNothingIsLeft) {
    recorder.fail({.call = "GetMethodID com/corvallen/storage/test/data/MemoryChannel size",
                   .failure = JniFailure::exception("java/lang/NoSuchMethodError")});
    EXPECT_THAT(internalErrorOf([&] { run(); }), StartsWith("Method size with signature ()J not found.\n"));
    expectNothingLeft();
}

TEST_P(HalfMadeStreamTest, ChannelThatCannotBeHeldIsABadAllocAndNothingIsLeft) {
    recorder.fail({.call = "NewGlobalRef", .failure = JniFailure::outOfMemory()});
    EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { run(); }));
    expectNothingLeft();
}

TEST_P(HalfMadeStreamTest, MachineThatGoesMeanwhileIsReportedAndNothingIsLeft) {
    handle->removeAfter(2);
    EXPECT_EQ(internalErrorOf([&] { run(); }), "JVM remvoed");
    expectNothingLeft();
    handle->restore();
}

TEST_P(HalfMadeStreamTest, ExceptionMakesNoStream) {
    script::failNext(env(), GetParam() ? "getReadOnlyChannel" : "getChannel", "IN_USE", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { run(); }));
    EXPECT_EQ(recorder.count("NewGlobalRef"), 0U);
    EXPECT_EQ(handle.use_count(), 2);
}

INSTANTIATE_TEST_SUITE_P(Ways, HalfMadeStreamTest, ::testing::Bool(),
                         [](const auto& tested) { return std::string(tested.param ? "ReadOnly" : "ReadWrite"); });

}  // namespace
}  // namespace storage::javaprovider::test
