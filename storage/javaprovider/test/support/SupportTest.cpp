#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "foundation/log/SeverityMask.h"
#include "foundation/log/basic_diagnostic_logger.h"
#include "support/AttachedScope.h"
#include "support/FakeJVM.h"
#include "support/FixtureNames.h"
#include "support/JavaHelpers.h"
#include "support/JvmTest.h"
#include "support/LogCapture.h"

namespace storage::javaprovider::test {

namespace {

using foundation::log::Severity;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The handle that can lose its machine.
class FakeJVMTest : public JvmTest {
protected:
    FakeJVM fake{jvm()};
};

TEST_F(FakeJVMTest, TheMachineCanGoAndComeBack) {
    EXPECT_NE(fake.getJavaVM(), nullptr);
    fake.remove();
    EXPECT_EQ(fake.getJavaVM(), nullptr);
    fake.restore();
    EXPECT_NE(fake.getJavaVM(), nullptr);
    EXPECT_EQ(fake.lookups(), 3U);
}

TEST_F(FakeJVMTest, TheMachineCanGoAfterSomeQuestions) {
    fake.removeAfter(1);
    EXPECT_NE(fake.getJavaVM(), nullptr);
    EXPECT_EQ(fake.getJavaVM(), nullptr);
    EXPECT_EQ(fake.getJavaVM(), nullptr);
}

TEST_F(FakeJVMTest, AttachmentsAreCounted) {
    { const AttachedScope already(fake.getJavaVM()); }
    EXPECT_EQ(fake.attachments(), 0U);
    onFreshThread([&] { const AttachedScope attached(fake.getJavaVM()); });
    EXPECT_EQ(fake.attachments(), 1U);
    EXPECT_EQ(fake.detachments(), 1U);
}

TEST_F(FakeJVMTest, AttachmentsCanBeRefused) {
    fake.refuseAttachments(true);
    EXPECT_THROW(onFreshThread([&] { const AttachedScope refused(fake.getJavaVM()); }), std::runtime_error);
    EXPECT_EQ(fake.attachments(), 0U);
}

TEST(LogCaptureTest, RecordsOfTheChannelAreCapturedWhileItLives) {
    foundation::log::basic_diagnostic_logger<char> logger("storage::javaprovider");
    foundation::log::basic_diagnostic_logger<char> other("some other channel");
    foundation::log::setSeverityMask("some other channel", foundation::log::AllSeverities);
    const std::uint32_t before = foundation::log::severityMask("storage::javaprovider");
    {
        const LogCapture capture;
        FOUNDATION_LOG(logger, Severity::Progress) << "one " << 1;
        FOUNDATION_LOG(other, Severity::Progress) << "elsewhere";
        logger.indent().increase();
        FOUNDATION_LOG(logger, Severity::Failure) << "two";
        logger.indent().decrease();
        EXPECT_THAT(capture.records(),
                    ElementsAre(LogRecord{Severity::Progress, "one 1", 0}, LogRecord{Severity::Failure, "two", 1}));
        EXPECT_THAT(capture.texts(Severity::Failure), ElementsAre("two"));
    }
    EXPECT_EQ(foundation::log::severityMask("storage::javaprovider"), before);
    foundation::log::setSeverityMask("some other channel", 0);
}

TEST(LogCaptureTest, SeveritiesOutsideOfTheMaskAreNotCaptured) {
    foundation::log::basic_diagnostic_logger<char> logger("storage::javaprovider");
    LogCapture capture(static_cast<std::uint32_t>(Severity::Failure));
    FOUNDATION_LOG(logger, Severity::Progress) << "not wanted";
    EXPECT_THAT(capture.texts(), IsEmpty());
    FOUNDATION_LOG(logger, Severity::Failure) << "wanted";
    EXPECT_THAT(capture.texts(), ElementsAre("wanted"));
    capture.clear();
    EXPECT_THAT(capture.records(), IsEmpty());
}

/// The helpers that tests use around the code under test.
class JavaHelpersTest : public JvmTest {};

TEST_F(JavaHelpersTest, TextGoesThereAndBack) {
    const std::u16string text = std::u16string(u"a\0b", 3) + u"\U0001F600";
    EXPECT_EQ(utf16(env(), javaString(env(), text)), text);
    EXPECT_EQ(utf16(env(), javaString(env(), u"")), u"");
    EXPECT_EQ(utf16(env(), nullptr), u"");
}

TEST_F(JavaHelpersTest, JavaExceptionsBecomeErrors) {
    EXPECT_THROW((void)findClass(env(), "no/such/Class"), std::runtime_error);
    EXPECT_THROW(callStaticVoid(env(), fixture::Script, "noSuchMethod"), std::runtime_error);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_F(JavaHelpersTest, AFreshThreadIsNotAttachedAndItsExceptionArrives) {
    bool attached = true;
    onFreshThread([&] { attached = isAttached(vm()); });
    EXPECT_FALSE(attached);
    EXPECT_THROW(onFreshThread([] { throw std::out_of_range("thrown there"); }), std::out_of_range);
}

TEST_F(JavaHelpersTest, HelpersAreNotRecordedAndKeepNothing) {
    const JniRecorder recorder(vm());
    callStaticVoid(env(), fixture::Script, "reset");
    EXPECT_EQ(callStaticInt(env(), fixture::Script, "instances"), 0);
    (void)newObject(env(), fixture::ScriptedProvider);
    EXPECT_EQ(callStaticInt(env(), fixture::Script, "instances"), 1);
    EXPECT_THAT(recorder.calls(), IsEmpty());
    EXPECT_EQ(recorder.liveLocals(), 0);
}

}  // namespace

}  // namespace storage::javaprovider::test
