// Reading and writing: one Java call each, on the caller's own memory.
#include <gmock/gmock.h>

#include <array>
#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <string_view>

#include "data/StreamTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ErrorCode;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::streamsize GiB = 1024 * 1024 * 1024;

/// The two directions, which are one algorithm.
struct Direction {
    const char* method;
    std::streamsize (*move)(ProviderChannelByteStream&, char*, std::streamsize);

    friend void PrintTo(const Direction& direction, std::ostream* out) { *out << direction.method; }
};

class TransferTest : public StreamTest, public ::testing::WithParamInterface<Direction> {
protected:
    void SetUp() override {
        StreamTest::SetUp();
        stream = streamOver("0123456789");
        mayLeave("NewDirectByteBuffer");  // by a transfer that fails
    }

    std::streamsize move(std::streamsize count) { return GetParam().move(*stream, memory.data(), count); }
    [[nodiscard]] static std::string method() { return GetParam().method; }
    [[nodiscard]] static std::string call() { return "CallIntMethod " + method() + "(Ljava/nio/ByteBuffer;)I"; }

    std::unique_ptr<ProviderChannelByteStream> stream;
    std::array<char, 16> memory{};
};

TEST_P(TransferTest, MakesExactlyTheseCallsEachTime) {
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        EXPECT_EQ(move(4), 4);
        EXPECT_THAT(recorder.calls(), ElementsAre("PushLocalFrame", "NewDirectByteBuffer 4", call(), "ExceptionCheck",
                                                  "DeleteLocalRef", "PopLocalFrame"));
    }
}

TEST_P(TransferTest, HandsTheBufferOverAndReleasesIt) {
    move(4);
    const auto buffer = recorder.record("NewDirectByteBuffer").resultReference;
    EXPECT_EQ(recorder.record("CallIntMethod").referenceArgument(0), buffer);
    EXPECT_EQ(recorder.record("DeleteLocalRef").targetReference, buffer);
}

TEST_P(TransferTest, BufferIsTheCallersOwnMemory) {
    move(4);
    EXPECT_EQ(callStaticString(env(), fixture::MemoryChannel, "lastAddress"),
              std::to_string(reinterpret_cast<std::intptr_t>(memory.data())));
    EXPECT_THAT(javaCalls(), ElementsAre(method() + " 0 4 4"));
}

TEST_P(TransferTest, CapacityIsTheCountUpToTheLargestOfJava) {
    tell("answerTransfersWith", {"5"});
    for (const auto& [count, capacity] : {std::pair<std::streamsize, const char*>{0, "0"},
                                          {1, "1"},
                                          {2 * GiB - 2, "2147483646"},
                                          {2 * GiB - 1, "2147483647"},
                                          {2 * GiB, "2147483647"},
                                          {3 * GiB, "2147483647"},
                                          {4 * GiB + 1, "2147483647"},
                                          {std::numeric_limits<std::streamsize>::max(), "2147483647"}}) {
        recorder.clear();
        script::reset(env());
        EXPECT_EQ(move(count), 5) << count;
        EXPECT_EQ(recorder.count(std::string("NewDirectByteBuffer ") + capacity), 1U) << count;
        const std::string seen = std::string(" 0 ") + capacity + " " + capacity;
        EXPECT_THAT(javaCalls(), ElementsAre(method() + seen)) << "one call, whatever the count";
    }
}

TEST_P(TransferTest, NegativeCountIsPassedOnAndRefusedByTheMachine) {
    EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { move(-5); }));
    EXPECT_EQ(recorder.count("NewDirectByteBuffer -5"), 1U);
    EXPECT_THAT(javaCalls(), IsEmpty());
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_P(TransferTest, CountIsWhateverJavaSays) {
    for (const char* count : {"0", "-1", "1", "2147483647", "-2147483648", "100"}) {
        tell("answerTransfersWith", {count});
        EXPECT_EQ(move(4), std::stoll(count));
    }
}

TEST_P(TransferTest, ShortTransferIsNotContinued) {
    tell("moveAtMost", {"3"});
    EXPECT_EQ(move(8), 3);
    EXPECT_THAT(javaCalls(), ElementsAre(method() + " 0 8 8"));
}

// ---- failures ----

TEST_P(TransferTest, ProviderExceptionBecomesTheFrameworksError) {
    failNext(method(), "STORAGE_FULL", "java://test/full");
    const auto error = thrownBy<ProviderError>([&] { move(4); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::StorageFull);
    EXPECT_EQ(error->location(), StorageIRI(u"java://test/full"));
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_P(TransferTest, AnyOtherExceptionIsAnInternalError) {
    failNext(method(), "runtime", "a bug");
    EXPECT_EQ(internalErrorOf([&] { move(4); }),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: a bug");
}

TEST_P(TransferTest, FailureLeavesTheBufferToTheFrame) {
    failNext(method(), "NOT_FOUND", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { move(4); }));
    const auto buffer = recorder.record("NewDirectByteBuffer").resultReference;
    for (const JniCall& released : recorder.records({.only = "DeleteLocalRef"})) {
        EXPECT_NE(released.targetReference, buffer);
    }
    EXPECT_EQ(recorder.calls().back(), "PopLocalFrame");
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_P(TransferTest, BufferThatCannotBeMadeForWantOfMemoryIsABadAlloc) {
    recorder.fail({.call = "NewDirectByteBuffer", .failure = JniFailure::outOfMemory()});
    EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { move(4); }));
    EXPECT_THAT(javaCalls(), IsEmpty());
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_P(TransferTest, BufferThatIsNullWithoutReasonIsLeftToJava) {
    recorder.fail({.call = "NewDirectByteBuffer", .failure = JniFailure::silent()});
    tell("answerTransfersWith", {"7"});
    EXPECT_EQ(move(4), 7);
    EXPECT_THAT(javaCalls(), ElementsAre(method() + " null"));
    EXPECT_EQ(recorder.record("CallIntMethod").objectArgument(0), nullptr);
    EXPECT_EQ(recorder.count("DeleteLocalRef"), 0U);
}

TEST_P(TransferTest, NullBufferThatJavaRejectsIsAnInternalError) {
    recorder.fail({.call = "NewDirectByteBuffer", .failure = JniFailure::silent()});
    EXPECT_THROW(move(4), InternalError);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_P(TransferTest, RemovedMachineIsReportedBeforeAnythingElse) {
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { move(4); }), "JVM remvoed");
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    handle->restore();
    EXPECT_EQ(move(4), 4);
}

TEST_P(TransferTest, WorksAgainAfterAFailure) {
    failNext(method(), "UNAVAILABLE", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { move(4); }));
    EXPECT_EQ(move(4), 4);
}

TEST_P(TransferTest, ThousandTransfersLeaveNothingBehind) {
    tell("answerTransfersWith", {"1"});
    recorder.keepCalls(false);
    for (int i = 0; i < 1000; ++i) {
        move(4);
    }
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(recorder.peakLocals(), 1);
}

TEST_P(TransferTest, IsNotTraced) {
    EXPECT_THAT(traced([&] { move(3); }), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Directions, TransferTest,
    ::testing::Values(Direction{"read", [](auto& s, char* m, std::streamsize n) { return s.read(m, n); }},
                      Direction{"write", [](auto& s, char* m, std::streamsize n) { return s.write(m, n); }}),
    [](const auto& tested) { return std::string(tested.param.method); });

// ---- bytes ----

class TransferredBytesTest : public StreamTest {};

TEST_F(TransferredBytesTest, ReadFillsTheCallersMemoryAndNoMore) {
    const auto stream = streamOver("0123456789");
    std::array<char, 8> memory{'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
    EXPECT_EQ(stream->read(memory.data(), 6), 6);
    EXPECT_EQ(std::string_view(memory.data(), 8), "012345xx");
    EXPECT_EQ(stream->read(memory.data(), 6), 4) << "short at the end";
    EXPECT_EQ(std::string_view(memory.data(), 4), "6789");
}

TEST_F(TransferredBytesTest, ReadAtTheEndGivesMinusOne) {
    const auto stream = streamOver("");
    char byte = 'x';
    EXPECT_EQ(stream->read(&byte, 1), -1);
    EXPECT_EQ(byte, 'x');
}

TEST_F(TransferredBytesTest, WrittenBytesCanBeReadBack) {
    const auto stream = streamOver("0123456789");
    static constexpr char Constant[] = "abc";
    EXPECT_EQ(stream->write(Constant, 3), 3);
    EXPECT_EQ(stream->seek(0, std::ios_base::beg), std::streampos(0));
    std::array<char, 10> memory{};
    EXPECT_EQ(stream->read(memory.data(), 10), 10);
    EXPECT_EQ(std::string_view(memory.data(), 10), "abc3456789");
}

TEST_F(TransferredBytesTest, AllByteValuesSurvive) {
    const auto stream = streamOver("");
    std::array<char, 256> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>(static_cast<unsigned char>(i));
    }
    EXPECT_EQ(stream->write(bytes.data(), 256), 256);
    stream->seek(0, std::ios_base::beg);
    std::array<char, 256> back{};
    EXPECT_EQ(stream->read(back.data(), 256), 256);
    EXPECT_EQ(bytes, back);
}

}  // namespace
}  // namespace storage::javaprovider::test
