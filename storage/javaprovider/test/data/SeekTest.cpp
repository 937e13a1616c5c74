// Seeking: the base that the way names, the offset, and what Java is asked.
#include <gmock/gmock.h>

#include <cstdint>
#include <ios>
#include <limits>
#include <string>

#include "data/StreamTest.h"
#include "provider/ThrownErrors.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ErrorCode;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int64_t Largest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t Smallest = std::numeric_limits<std::int64_t>::min();

class SeekTest : public StreamTest {
protected:
    void SetUp() override {
        StreamTest::SetUp();
        stream = streamOver(std::string(100, 'x'));
    }

    std::streampos seek(std::streamoff offset, std::ios_base::seekdir way) {
        script::reset(env());
        recorder.clear();
        return stream->seek(offset, way);
    }

    std::unique_ptr<ProviderChannelByteStream> stream;
};

TEST_F(SeekTest, FromTheBeginningSetsThePositionAndAsksNothing) {
    EXPECT_EQ(seek(7, std::ios_base::beg), std::streampos(7));
    EXPECT_THAT(recorder.calls(),
                ElementsAre("PushLocalFrame", "CallVoidMethod position(J)V", "ExceptionCheck", "PopLocalFrame"));
    EXPECT_THAT(javaCalls(), ElementsAre("position 7"));
}

TEST_F(SeekTest, FromTheCurrentPositionAsksForIt) {
    seek(7, std::ios_base::beg);
    EXPECT_EQ(seek(5, std::ios_base::cur), std::streampos(12));
    EXPECT_THAT(recorder.calls(), ElementsAre("PushLocalFrame", "CallLongMethod position()J", "ExceptionCheck",
                                              "CallVoidMethod position(J)V", "ExceptionCheck", "PopLocalFrame"));
    EXPECT_EQ(recorder.record("CallVoidMethod").longArgument(0), 12);
    EXPECT_EQ(seek(-2, std::ios_base::cur), std::streampos(10));
}

TEST_F(SeekTest, FromTheEndAsksForTheSize) {
    EXPECT_EQ(seek(-10, std::ios_base::end), std::streampos(90));
    EXPECT_THAT(recorder.calls(), ElementsAre("PushLocalFrame", "CallLongMethod size()J", "ExceptionCheck",
                                              "CallVoidMethod position(J)V", "ExceptionCheck", "PopLocalFrame"));
    EXPECT_THAT(javaCalls(), ElementsAre("size", "position 90"));
    EXPECT_EQ(seek(10, std::ios_base::end), std::streampos(110)) << "Java decides about positions past the end";
}

TEST_F(SeekTest, ByNothingFromTheCurrentPositionStillSetsIt) {
    seek(33, std::ios_base::beg);
    EXPECT_EQ(seek(0, std::ios_base::cur), std::streampos(33));
    EXPECT_THAT(javaCalls(), ElementsAre("position", "position 33"));
}

TEST_F(SeekTest, NegativePositionGoesToJavaAsItIs) {
    EXPECT_EQ(seek(-10, std::ios_base::beg), std::streampos(-10));
    EXPECT_THAT(javaCalls(), ElementsAre("position -10"));
    EXPECT_EQ(seek(-200, std::ios_base::end), std::streampos(-100));
}

TEST_F(SeekTest, UnknownWayCountsAsTheBeginning) {
    seek(50, std::ios_base::beg);
    for (const int way : {3, 42, 1 << 16}) {
        EXPECT_EQ(seek(7, static_cast<std::ios_base::seekdir>(way)), std::streampos(7)) << way;
        EXPECT_THAT(javaCalls(), ElementsAre("position 7")) << way;
    }
}

TEST_F(SeekTest, LargePositionsSurvive) {
    EXPECT_EQ(seek(Largest, std::ios_base::beg), std::streampos(Largest));
    EXPECT_EQ(seek(Smallest, std::ios_base::beg), std::streampos(Smallest));
    EXPECT_EQ(seek(5'000'000'000, std::ios_base::beg), std::streampos(5'000'000'000));
    EXPECT_EQ(seek(1, std::ios_base::cur), std::streampos(5'000'000'001));
}

TEST_F(SeekTest, SumBeyondTheRangeWrapsAround) {
    EXPECT_EQ(seek(Largest, std::ios_base::end), std::streampos(Smallest + 99));
    EXPECT_THAT(javaCalls(), ElementsAre("size", "position " + std::to_string(Smallest + 99)));
}

TEST_F(SeekTest, ResultHasNoConversionState) {
    const std::streampos position = seek(7, std::ios_base::beg);
    const std::mbstate_t state = position.state();
    EXPECT_NE(std::mbsinit(&state), 0);
}

// ---- failures ----

TEST_F(SeekTest, PositionThatCannotBeHadEndsTheSeek) {
    failNext("position", "UNAVAILABLE", "java://test/a");
    const auto error = thrownBy<ProviderError>([&] { seek(1, std::ios_base::cur); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::Unavailable);
    EXPECT_EQ(recorder.count("CallVoidMethod position"), 0U);
}

TEST_F(SeekTest, SizeThatCannotBeHadEndsTheSeek) {
    failNext("size", "runtime", "a bug");
    EXPECT_EQ(internalErrorOf([&] { seek(1, std::ios_base::end); }),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: a bug");
    EXPECT_EQ(recorder.count("CallVoidMethod position"), 0U);
}

TEST_F(SeekTest, PositionThatCannotBeSetIsReported) {
    failNext("position", "INVALID_LOCATION", "java://test/a");
    const auto error = thrownBy<ProviderError>([&] { seek(-1, std::ios_base::beg); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::InvalidLocation);
    EXPECT_EQ(recorder.count("CallVoidMethod position"), 1U);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_F(SeekTest, RemovedMachineIsReportedBeforeAnythingElse) {
    handle->remove();
    for (const auto way : {std::ios_base::beg, std::ios_base::cur, std::ios_base::end}) {
        EXPECT_EQ(internalErrorOf([&] { stream->seek(0, way); }), "JVM remvoed");
    }
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    handle->restore();
}

TEST_F(SeekTest, LooksForTheMachineOnce) {
    const auto before = handle->lookups();
    seek(0, std::ios_base::cur);
    EXPECT_EQ(handle->lookups(), before + 2) << "whether it is there, and what it is";
}

TEST_F(SeekTest, NeitherSeekingNorClosingIsTraced) {
    EXPECT_THAT(traced([&] {
                    stream->seek(1, std::ios_base::end);
                    stream->seek(1, std::ios_base::cur);
                    stream->close();
                }),
                IsEmpty());
}

}  // namespace
}  // namespace storage::javaprovider::test
