#include <gmock/gmock.h>

#include <boost/exception/exception.hpp>

#include <stdexcept>

#include "JNIUtilsException.h"
#include "TranslationTest.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "foundation/storage/provider/Exception.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

namespace except = foundation::core::except;
using ::testing::ElementsAre;
using ::testing::StartsWith;
using Internal = except::detail::AnonymousInternalException<std::runtime_error>;

class UnexpectedExceptionTest : public TranslationTest {
protected:
    /// The text of the internal error that an exception becomes.
    std::string textOf(jthrowable exception) {
        const std::exception_ptr translated = translate(exception);
        EXPECT_FALSE(isAnyPending());
        return messageOf<Internal>([&] { std::rethrow_exception(translated); });
    }
    std::string textOf(const std::string& kind, const std::u16string& text = u"") {
        return textOf(failure(kind, text));
    }
};

TEST_F(UnexpectedExceptionTest, NamesItsClassAndItsMessage) {
    EXPECT_EQ(textOf("nullPointer", u"x"),
              "ProviderCallback threw an unexpected java.lang.NullPointerException. The message was: x");
}

TEST_F(UnexpectedExceptionTest, CheckedExceptionIsUnexpectedToo) {
    EXPECT_EQ(textOf("checked", u"disk"),
              "ProviderCallback threw an unexpected java.io.IOException. The message was: disk");
}

TEST_F(UnexpectedExceptionTest, ErrorOfTheMachineIsUnexpectedToo) {
    EXPECT_EQ(textOf("outOfMemory", u"heap"),
              "ProviderCallback threw an unexpected java.lang.OutOfMemoryError. The message was: heap");
}

TEST_F(UnexpectedExceptionTest, MissingMessageGivesNothingAfterTheLastText) {
    EXPECT_EQ(textOf("nullMessage"),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: ");
}

TEST_F(UnexpectedExceptionTest, EmptyMessageGivesNothingAfterTheLastText) {
    EXPECT_EQ(textOf("runtime", u""),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: ");
}

TEST_F(UnexpectedExceptionTest, MessageEndsBeforeAZero) {
    EXPECT_EQ(textOf("nulInMessage"),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: before");
}

TEST_F(UnexpectedExceptionTest, MessageBeyondAsciiIsUtf8) {
    EXPECT_EQ(textOf("nonBmpMessage"),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: "
              "a \xF0\x9F\x98\x80 b");
    EXPECT_EQ(textOf("runtime", u"k\u00E4se \u65E5\u672C"),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: "
              "k\xC3\xA4se \xE6\x97\xA5\xE6\x9C\xAC");
}

TEST_F(UnexpectedExceptionTest, LoneSurrogateInTheMessageIsReplaced) {
    EXPECT_EQ(textOf("loneSurrogateMessage"),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: "
              "a \xEF\xBF\xBD b");
}

TEST_F(UnexpectedExceptionTest, LongMessageIsWhole) {
    const std::string text = textOf("runtime", std::u16string(200'000, u'm'));
    EXPECT_TRUE(text.ends_with(": " + std::string(200'000, 'm')));
}

TEST_F(UnexpectedExceptionTest, NestedClassHasItsBinaryName) {
    EXPECT_EQ(textOf("nullToString", u"message"),
              "ProviderCallback threw an unexpected com.corvallen.storage.test.Failures$SelfDescribing. "
              "The message was: message");
}

TEST_F(UnexpectedExceptionTest, MessageThatThrowsIsLikeNone) {
    EXPECT_EQ(textOf("throwingGetMessage"),
              "ProviderCallback threw an unexpected com.corvallen.storage.test.Failures$Unspeakable. "
              "The message was: ");
}

TEST_F(UnexpectedExceptionTest, IsCaughtInEveryForm) {
    const std::exception_ptr translated = translate("runtime", u"x");
    const auto again = [&] { std::rethrow_exception(translated); };
    EXPECT_TRUE((throwsAs<except::Exception<except::IInternalException, std::runtime_error, void>>(again)));
    EXPECT_TRUE(throwsAs<except::IInternalException>(again));
    EXPECT_TRUE(throwsAs<except::IException>(again));
    EXPECT_TRUE(throwsAs<std::runtime_error>(again));
    EXPECT_TRUE(throwsAs<boost::exception>(again));
    EXPECT_THROW(throwsAs<foundation::storage::provider::Exception>(again), Internal);
}

TEST_F(UnexpectedExceptionTest, IsRethrown) {
    raise("runtime", u"x");
    EXPECT_THROW(rethrowJavaException(guard()), Internal);
    EXPECT_FALSE(isAnyPending());
}

TEST_F(UnexpectedExceptionTest, IsTranslatedWithTheseCalls) {
    static_cast<void>(translate("nullPointer", u"x"));
    EXPECT_THAT(
        recorder.calls(),
        ElementsAre("ExceptionCheck", "ExceptionOccurred",
                    // whether it is a ProviderException: its own loader is none, so only the system is asked
                    "GetObjectClass", "FindClass java/lang/Class",
                    "GetMethodID java/lang/Class getClassLoader()Ljava/lang/ClassLoader;",
                    "CallObjectMethod getClassLoader()Ljava/lang/ClassLoader;", "FindClass java/lang/ClassLoader",
                    "GetMethodID java/lang/ClassLoader loadClass(Ljava/lang/String;)Ljava/lang/Class;",
                    "FindClass java/lang/ClassLoader",
                    "GetMethodID java/lang/ClassLoader getParent()Ljava/lang/ClassLoader;",
                    "NewStringUTF com/corvallen/storage/provider/ProviderException",
                    "FindClass com/corvallen/storage/provider/ProviderException", "DeleteLocalRef",
                    "IsInstanceOf com/corvallen/storage/provider/ProviderException", "DeleteLocalRef",
                    // its class's name, and its message
                    "GetObjectClass", "GetObjectClass", "GetMethodID java/lang/Class getName()Ljava/lang/String;",
                    "CallObjectMethod getName()Ljava/lang/String;", "GetStringChars", "ReleaseStringChars",
                    "DeleteLocalRef", "GetMethodID java/lang/NullPointerException getMessage()Ljava/lang/String;",
                    "CallObjectMethod getMessage()Ljava/lang/String;", "GetStringChars", "ReleaseStringChars",
                    "DeleteLocalRef", "DeleteLocalRef", "DeleteLocalRef",
                    // and at the end
                    "ExceptionClear", "DeleteLocalRef"));
}

TEST_F(UnexpectedExceptionTest, ReleasesWhatItMade) {
    static_cast<void>(translate("runtime", u"x"));
    EXPECT_THAT(releases(), ElementsAre("GetObjectClass", "FindClass com/corvallen/storage/provider/ProviderException",
                                        "CallObjectMethod getName()Ljava/lang/String;",
                                        "CallObjectMethod getMessage()Ljava/lang/String;", "GetObjectClass",
                                        "GetObjectClass", "ExceptionOccurred"));
    // As for a ProviderException, but there is no loader that could have a parent.
    EXPECT_EQ(recorder.liveLocals(), LeftToTheFrame - 1) << ::testing::PrintToString(recorder.leaks());
}

TEST_F(UnexpectedExceptionTest, NameIsThatOfItsClassAndMessageItsOwn) {
    static_cast<void>(translate("runtime", u"x"));
    const auto classes = recorder.records({.only = "GetObjectClass"});
    ASSERT_EQ(classes.size(), 3U);
    const ReferenceNumber exception = recorder.record("ExceptionOccurred").resultReference;
    EXPECT_EQ(classes[1].targetReference, exception);
    EXPECT_EQ(classes[2].targetReference, classes[1].resultReference);
    EXPECT_EQ(recorder.record("CallObjectMethod getName").targetReference, classes[1].resultReference);
    EXPECT_EQ(recorder.record("CallObjectMethod getMessage").targetReference, exception);
}

TEST_F(UnexpectedExceptionTest, IsExaminedWhileItIsPendingAndClearedAtTheEnd) {
    static_cast<void>(translate("runtime", u"x"));
    expectExaminedWhilePending();
}

TEST_F(UnexpectedExceptionTest, ErrorOfAContractOfItsOwnIsUnexpected) {
    EXPECT_EQ(textOf(foreign("errorOfOwnContract", TEST_CONTRACT_JAR)),
              "ProviderCallback threw an unexpected com.corvallen.storage.provider.ProviderException. "
              "The message was: from another contract");
}

TEST_F(UnexpectedExceptionTest, ErrorIsUnexpectedWhenProviderExceptionCannotBeLoaded) {
    const jthrowable exception = failure("NOT_FOUND", u"java://a");
    recorder.fail({.call = "FindClass com/corvallen/storage/provider/ProviderException",
                   .failure = JniFailure::exception("java/lang/NoClassDefFoundError")});
    EXPECT_EQ(textOf(exception),
              "ProviderCallback threw an unexpected com.corvallen.storage.provider.ProviderException. "
              "The message was: NOT_FOUND: java://a");
    EXPECT_EQ(recorder.count("IsInstanceOf"), 0U);
    EXPECT_EQ(recorder.liveLocals(), LeftToTheFrame) << ::testing::PrintToString(recorder.leaks());
}

TEST_F(UnexpectedExceptionTest, BugOfALoaderThatKnowsTheContractIsUnexpected) {
    EXPECT_EQ(textOf(foreign("backEndBugOfTolerantLoader", "a bug")),
              "ProviderCallback threw an unexpected com.corvallen.storage.test.ForeignErrors$BackEndBug. "
              "The message was: a bug");
    EXPECT_EQ(recorder.count("IsInstanceOf com/corvallen/storage/provider/ProviderException"), 1U);
}

TEST_F(UnexpectedExceptionTest, LookupThatFailsLeavesAtOnceAndReleasesEverything) {
    for (const char* lookup : {"GetMethodID java/lang/Class getName", "GetMethodID java/lang/IllegalStateException"}) {
        recorder.clear();
        raise("runtime", u"x");
        recorder.fail({.call = lookup, .failure = JniFailure::exception("java/lang/NoSuchMethodError")});
        EXPECT_THAT(messageOf<Internal>([this] { static_cast<void>(checkJavaException(guard())); }),
                    StartsWith("Method get"));
        EXPECT_FALSE(isAnyPending());
        // The description of the failed lookup adds a throwable, its class and its text to what is left to the frame.
        EXPECT_EQ(recorder.liveLocals(), LeftToTheFrame - 1 + 3) << ::testing::PrintToString(recorder.leaks());
    }
}

TEST_F(UnexpectedExceptionTest, TextWithoutMemoryIsBadAllocAndReleasesEverything) {
    for (const std::size_t text : {1U, 2U}) {
        recorder.clear();
        raise("runtime", u"x");
        recorder.fail({.call = "GetStringChars", .occurrence = text});
        EXPECT_THROW(static_cast<void>(checkJavaException(guard())), std::bad_alloc);
        EXPECT_FALSE(isAnyPending());
        EXPECT_EQ(recorder.liveLocals(), LeftToTheFrame - 1) << ::testing::PrintToString(recorder.leaks());
    }
}

}  // namespace

}  // namespace storage::javaprovider::test
