// Closing and destroying streams, and streams on several threads.
#include <gmock/gmock.h>

#include <array>
#include <atomic>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "data/StreamTest.h"
#include "provider/ThrownErrors.h"
#include "storage/jvm/ThreadAttachment.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ErrorCode;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ByteStreamTest : public StreamTest {
protected:
    void SetUp() override {
        StreamTest::SetUp();
        channel = channelOver("0123456789");
        recorder.clear();
        stream = std::make_unique<ProviderChannelByteStream>(handle, channel);
        held = recorder.record("NewGlobalRef").resultReference;
    }

    jobject channel = nullptr;
    std::unique_ptr<ProviderChannelByteStream> stream;
    ReferenceNumber held = 0;
    std::array<char, 16> memory{};
};

// ---- closing ----

TEST_F(ByteStreamTest, CloseCallsJavaAndKeepsTheChannel) {
    recorder.clear();
    stream->close();
    EXPECT_THAT(recorder.calls(),
                ElementsAre("PushLocalFrame", "CallVoidMethod close()V", "ExceptionCheck", "PopLocalFrame"));
    EXPECT_THAT(javaCalls(), ElementsAre("close"));
}

TEST_F(ByteStreamTest, UseAfterCloseGoesToJava) {
    stream->close();
    EXPECT_EQ(stream->read(memory.data(), 4), 4);
    EXPECT_EQ(stream->write("a", 1), 1);
    EXPECT_EQ(stream->seek(0, std::ios_base::end), std::streampos(10));
    stream->close();
    EXPECT_THAT(javaCalls(), ElementsAre("close", "read 0 4 4", "write 0 1 1", "size", "position 10", "close"));
}

TEST_F(ByteStreamTest, FailureOfCloseIsReported) {
    failNext("close", "STORAGE_FULL", "java://test/a");
    const auto error = thrownBy<ProviderError>([&] { stream->close(); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::StorageFull);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    failNext("close", "checked", "disk");
    EXPECT_EQ(internalErrorOf([&] { stream->close(); }),
              "ProviderCallback threw an unexpected java.io.IOException. The message was: disk");
}

TEST_F(ByteStreamTest, CloseWithoutAMachineIsReported) {
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { stream->close(); }), "JVM remvoed");
    handle->restore();
    EXPECT_THAT(javaCalls(), IsEmpty());
}

// ---- destruction ----

TEST_F(ByteStreamTest, DestructionReleasesTheChannelAndClosesNothing) {
    stream.reset();
    EXPECT_THAT(javaCalls(), IsEmpty());
    EXPECT_EQ(recorder.record("DeleteGlobalRef").targetReference, held);
    EXPECT_EQ(recorder.liveGlobals(), 0);
}

TEST_F(ByteStreamTest, DestructionMakesExactlyTheseCalls) {
    recorder.clear();
    stream.reset();
    EXPECT_THAT(recorder.calls(), ElementsAre("PushLocalFrame", "DeleteGlobalRef", "PopLocalFrame"));
}

TEST_F(ByteStreamTest, DestructionAfterCloseIsTheSame) {
    stream->close();
    recorder.clear();
    stream.reset();
    EXPECT_THAT(recorder.calls(), ElementsAre("PushLocalFrame", "DeleteGlobalRef", "PopLocalFrame"));
    EXPECT_THAT(javaCalls(), ElementsAre("close"));
}

TEST_F(ByteStreamTest, DestructionWithoutAMachineIsSilent) {
    LogCapture log;
    handle->remove();
    EXPECT_NO_THROW(stream.reset());
    EXPECT_EQ(recorder.count("DeleteGlobalRef"), 0U);
    EXPECT_THAT(log.texts(), IsEmpty());
    EXPECT_EQ(handle.use_count(), 2) << "its share of the machine is let go all the same";
    handle->restore();
}

TEST_F(ByteStreamTest, DestructionWhenTheThreadIsRefusedIsSilent) {
    handle->refuseAttachments(true);
    onFreshThread([&] { EXPECT_NO_THROW(stream.reset()); });
    EXPECT_EQ(recorder.countOnAllThreads("DeleteGlobalRef"), 0U);
    EXPECT_EQ(handle.use_count(), 2);
    handle->refuseAttachments(false);
}

TEST_F(ByteStreamTest, OutlivesTheProviderThatOpenedIt) {
    tell("open", {"content"});
    const auto opened = provider->openReadOnlyByteStream(location);
    provider.reset();
    EXPECT_EQ(opened->read(memory.data(), 7), 7);
    EXPECT_EQ(std::string_view(memory.data(), 7), "content");
    EXPECT_EQ(handle.use_count(), 3) << "this test's two streams and the test itself";
}

// ---- threads ----

TEST_F(ByteStreamTest, MayBeMadeUsedAndDestroyedOnDifferentThreads) {
    onFreshThread([&] { EXPECT_EQ(stream->read(memory.data(), 4), 4); });
    onFreshThread([&] {
        const storage::jvm::ThreadAttachment attachment(handle);
        EXPECT_EQ(stream->seek(1, std::ios_base::cur), std::streampos(5));
        EXPECT_EQ(recorder.liveLocals(), 0);
    });
    EXPECT_EQ(stream->read(memory.data(), 4), 4);
    EXPECT_EQ(std::string_view(memory.data(), 4), "5678");
    onFreshThread([&] { stream.reset(); });
    EXPECT_EQ(recorder.liveGlobals(), 0);
    EXPECT_EQ(handle->attachments(), handle->detachments());
}

TEST_F(ByteStreamTest, TwoThreadsTakeTurns) {
    tell("answerTransfersWith", {"1"});
    constexpr int Each = 500;
    std::atomic<int> turn = 0;
    std::atomic<int> wrong = 0;
    const auto work = [&](int mine) {
        for (int n = 0; n < Each; ++n) {
            for (int current = turn; current % 2 != mine; current = turn) {
                turn.wait(current);
            }
            char byte = 0;
            try {
                wrong += stream->read(&byte, 1) == 1 ? 0 : 1;
            } catch (const std::exception&) {
                ++wrong;  // the other thread still gets its turn
            }
            ++turn;
            turn.notify_all();
        }
    };
    recorder.keepCalls(false);
    {
        const std::jthread other([&] { work(1); });
        work(0);
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(javaCalls().size(), 2U * Each);
    EXPECT_EQ(handle->attachments(), handle->detachments());
}

}  // namespace
}  // namespace storage::javaprovider::test
