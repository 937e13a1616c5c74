#include <gmock/gmock.h>

#include <boost/exception/exception.hpp>

#include <optional>

#include "JNIUtilsException.h"
#include "TranslationTest.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "foundation/storage/provider/Exception.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

namespace except = foundation::core::except;
using ::testing::ElementsAre;
using ProviderError = foundation::storage::provider::Exception;
using OutOfMemory = except::detail::AnonymousInternalException<std::bad_alloc>;

constexpr const char* ForeignErrors = "com/corvallen/storage/test/ForeignErrors";

class ProviderErrorTest : public TranslationTest {
protected:
    /// The provider error that the pointer holds; the test fails, and nothing is given, when it holds another.
    static std::optional<ProviderError> held(const std::exception_ptr& pointer) {
        try {
            std::rethrow_exception(pointer);
        } catch (const ProviderError& error) {
            return error;
        } catch (const std::exception& error) {
            ADD_FAILURE() << "another exception: " << error.what();
        }
        return std::nullopt;
    }

    void expectTranslated(const std::exception_ptr& pointer, int code, const std::u16string& location) {
        const auto error = held(pointer);
        ASSERT_TRUE(error.has_value());
        EXPECT_EQ(static_cast<int>(error->code()), code);
        EXPECT_EQ(error->location().text(), location);
        EXPECT_FALSE(isAnyPending());
    }
};

TEST_F(ProviderErrorTest, NothingPendingIsNothingAndOneQuestion) {
    EXPECT_EQ(checkJavaException(guard()), nullptr);
    EXPECT_THAT(recorder.calls(), ElementsAre("ExceptionCheck"));
}

TEST_F(ProviderErrorTest, NothingPendingRethrowsNothing) {
    EXPECT_NO_THROW(rethrowJavaException(guard()));
    EXPECT_THAT(recorder.calls(), ElementsAre("ExceptionCheck"));
}

TEST_F(ProviderErrorTest, ExceptionThatCannotBeHeldIsNothing) {
    const jthrowable exception = failure("NOT_FOUND", u"java://a");
    raise(exception);
    recorder.fail({.call = "ExceptionOccurred", .failure = JniFailure::silent()});
    EXPECT_EQ(checkJavaException(guard()), nullptr);
    EXPECT_THAT(recorder.calls(), ElementsAre("ExceptionCheck", "ExceptionOccurred"));
    EXPECT_TRUE(isPending(exception));
    static_cast<void>(takePending());
}

/// A row of the table of error numbers: the name that gives the number in Java, and the code of the host.
struct NumberRow {
    const char* name;
    int number;
    int code;
};

void PrintTo(const NumberRow& row, std::ostream* out) { *out << row.name; }

class ProviderErrorNumberTest : public ProviderErrorTest, public ::testing::WithParamInterface<NumberRow> {};

TEST_P(ProviderErrorNumberTest, BecomesItsCode) {
    raise(GetParam().name, u"java://mount/name");
    const auto translated = translate();
    expectTranslated(translated, GetParam().code, u"java://mount/name");
}

TEST_P(ProviderErrorNumberTest, IsTheNumberOfTheContract) {
    const JniRecorder::Unrecorded unrecorded;
    const jthrowable exception = failure(GetParam().name);
    const jmethodID getNumber = env()->GetMethodID(env()->GetObjectClass(exception), "getErrorCodeNumber", "()I");
    EXPECT_EQ(env()->CallIntMethod(exception, getNumber), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(Bridge, ProviderErrorNumberTest,
                         ::testing::Values(NumberRow{"UNKNOWN", 0, 0}, NumberRow{"NOT_FOUND", 1, 1},
                                           NumberRow{"ALREADY_EXISTS", 2, 2}, NumberRow{"ACCESS_DENIED", 3, 3},
                                           NumberRow{"NOT_A_FILE", 4, 4}, NumberRow{"NOT_A_FOLDER", 5, 5},
                                           NumberRow{"FOLDER_NOT_EMPTY", 6, 6}, NumberRow{"NOT_SUPPORTED", 7, 8},
                                           NumberRow{"INVALID_LOCATION", 8, 9}, NumberRow{"STORAGE_FULL", 9, 10},
                                           NumberRow{"IN_USE", 10, 11}, NumberRow{"UNAVAILABLE", 11, 12}),
                         [](const auto& test) { return "Number" + std::to_string(test.param.number); });

TEST_F(ProviderErrorTest, SubclassIsAProviderError) {
    expectTranslated(translate("own:IN_USE", u"java://a"), 11, u"java://a");
}

TEST_F(ProviderErrorTest, MissingLocationIsAnEmptyOne) { expectTranslated(translate("nowhere:NOT_FOUND"), 1, u""); }

TEST_F(ProviderErrorTest, LocationKeepsWhatIsNotAscii) {
    const std::u16string location = u"java://mount/k\u00E4se/\u65E5\u672C/\U0001F600";
    expectTranslated(translate("NOT_FOUND", location), 1, location);
}

TEST_F(ProviderErrorTest, LocationKeepsLoneSurrogates) {
    const std::u16string location = {u'j', char16_t{0xD83D}, u'x', char16_t{0xDE00}};
    expectTranslated(translate("NOT_FOUND", location), 1, location);
}

TEST_F(ProviderErrorTest, LocationEndsBeforeAZero) {
    expectTranslated(translate("NOT_FOUND", std::u16string(u"java://a\0b", 10)), 1, u"java://a");
}

TEST_F(ProviderErrorTest, IsCaughtAsTheHostCatchesIt) {
    const std::exception_ptr translated = translate("NOT_FOUND", u"java://a");
    const auto again = [&] { std::rethrow_exception(translated); };
    EXPECT_TRUE(throwsAs<ProviderError>(again));
    EXPECT_TRUE(throwsAs<except::IException>(again));
    EXPECT_TRUE(throwsAs<std::runtime_error>(again));
    EXPECT_TRUE(throwsAs<boost::exception>(again));
    EXPECT_THROW(throwsAs<except::IInternalException>(again), ProviderError);
}

TEST_F(ProviderErrorTest, IsRethrown) {
    raise("ACCESS_DENIED", u"java://a");
    EXPECT_EQ(messageOf<ProviderError>([this] { rethrowJavaException(guard()); }), "AccessDenied: java://a");
    EXPECT_FALSE(isAnyPending());
}

TEST_F(ProviderErrorTest, IsTranslatedWithTheseCalls) {
    static_cast<void>(translate("NOT_FOUND", u"java://a"));
    EXPECT_EQ(recorder.calls(),
              concat({{"ExceptionCheck", "ExceptionOccurred"},
                      callsThatFindProviderException(),
                      {"CallObjectMethod getLocationString()Ljava/lang/String;", "GetStringChars", "ReleaseStringChars",
                       "CallIntMethod getErrorCodeNumber()I", "DeleteLocalRef", "ExceptionClear", "DeleteLocalRef"}}));
}

TEST_F(ProviderErrorTest, MissingLocationIsNeitherReadNorReleased) {
    static_cast<void>(translate("nowhere:NOT_FOUND"));
    EXPECT_EQ(recorder.calls(), concat({{"ExceptionCheck", "ExceptionOccurred"},
                                        callsThatFindProviderException(),
                                        {"CallObjectMethod getLocationString()Ljava/lang/String;",
                                         "CallIntMethod getErrorCodeNumber()I", "ExceptionClear", "DeleteLocalRef"}}));
}

TEST_F(ProviderErrorTest, ReleasesEachReferenceInItsTurn) {
    static_cast<void>(translate("NOT_FOUND", u"java://a"));
    EXPECT_THAT(releases(), ElementsAre("CallObjectMethod getClassLoader()Ljava/lang/ClassLoader;", "GetObjectClass",
                                        "FindClass com/corvallen/storage/provider/ProviderException",
                                        "CallObjectMethod getLocationString()Ljava/lang/String;", "ExceptionOccurred"));
    EXPECT_EQ(recorder.liveLocals(), LeftToTheFrame) << ::testing::PrintToString(recorder.leaks());
}

TEST_F(ProviderErrorTest, IsExaminedWhileItIsPendingAndClearedAtTheEnd) {
    static_cast<void>(translate("NOT_FOUND", u"java://a"));
    expectExaminedWhilePending();
}

TEST_F(ProviderErrorTest, MethodsAreAskedOfTheExceptionItself) {
    static_cast<void>(translate("NOT_FOUND", u"java://a"));
    const ReferenceNumber exception = recorder.record("ExceptionOccurred").resultReference;
    EXPECT_EQ(recorder.record("CallObjectMethod getLocationString").targetReference, exception);
    EXPECT_EQ(recorder.record("CallIntMethod getErrorCodeNumber").targetReference, exception);
    EXPECT_EQ(recorder.record("IsInstanceOf").targetReference, exception);
}

TEST_F(ProviderErrorTest, FirstOneOfTheProcessLooksItsTwoMethodsUp) {
    const std::string cls = "com/corvallen/storage/provider/ProviderException";
    EXPECT_THAT(firstLookups(), ElementsAre("IsInstanceOf " + cls, "DeleteLocalRef", "GetObjectClass",
                                            "GetMethodID " + cls + " getLocationString()Ljava/lang/String;",
                                            "GetObjectClass", "GetMethodID " + cls + " getErrorCodeNumber()I"));
}

TEST_F(ProviderErrorTest, LaterOnesLookNoMethodOfProviderExceptionUp) {
    static_cast<void>(translate("NOT_FOUND", u"java://a"));
    static_cast<void>(translate("own:IN_USE", u"java://b"));
    onFreshThread([&] {
        const JNIEnvPtr other(jvm());
        {
            const JniRecorder::Unrecorded unrecorded;
            const jobject made = callStaticObject(other.get(), ForeignErrors, "backEndError", {"java://c"});
            other->Throw(static_cast<jthrowable>(made));
        }
        EXPECT_NE(checkJavaException(other), nullptr);
    });
    EXPECT_EQ(recorder.countOnAllThreads("GetMethodID com/corvallen/storage/provider/ProviderException"), 0U);
}

TEST_F(ProviderErrorTest, ErrorOfAnotherLoaderIsKnownWhenTheClassPathHasTheContract) {
    const jthrowable exception = foreign("backEndError", "java://isolated");
    expectTranslated(translate(exception), 1, u"java://isolated");
}

TEST_F(ProviderErrorTest, LoaderThatKnowsTheSlashedNameIsAskedOnce) {
    const jthrowable exception = foreign("backEndErrorOfTolerantLoader", "java://isolated");
    expectTranslated(translate(exception), 1, u"java://isolated");
    EXPECT_EQ(recorder.count("CallObjectMethod loadClass"), 1U);
    EXPECT_EQ(recorder.count("FindClass com/corvallen/storage/provider/ProviderException"), 0U);
    EXPECT_THAT(releases(), ElementsAre("CallObjectMethod getClassLoader()Ljava/lang/ClassLoader;", "GetObjectClass",
                                        "CallObjectMethod loadClass(Ljava/lang/String;)Ljava/lang/Class;",
                                        "CallObjectMethod getLocationString()Ljava/lang/String;", "ExceptionOccurred"));
}

TEST_F(ProviderErrorTest, LocationThatJavaCannotGiveIsAnEmptyOne) {
    raise("ACCESS_DENIED", u"java://a");
    recorder.fail({.call = "CallObjectMethod getLocationString"});
    expectTranslated(translate(), 3, u"");
    EXPECT_EQ(recorder.liveLocals(), LeftToTheFrame) << ::testing::PrintToString(recorder.leaks());
}

TEST_F(ProviderErrorTest, LocationWithoutMemoryIsBadAllocAndReleasesEverything) {
    raise("ACCESS_DENIED", u"java://a");
    recorder.fail({.call = "GetStringChars"});
    EXPECT_THROW(static_cast<void>(checkJavaException(guard())), OutOfMemory);
    EXPECT_FALSE(isAnyPending());
    EXPECT_EQ(recorder.count("CallIntMethod"), 0U);
    EXPECT_EQ(recorder.liveLocals(), LeftToTheFrame) << ::testing::PrintToString(recorder.leaks());
}

}  // namespace

}  // namespace storage::javaprovider::test
