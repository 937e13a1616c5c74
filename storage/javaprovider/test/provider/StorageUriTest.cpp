// How a location becomes a Java object, seen through an operation that takes one.
#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "JavaProvider.h"
#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"
#include "support/LogCapture.h"

namespace storage::javaprovider::test {
namespace {

using foundation::log::AllSeverities;
using foundation::log::Severity;
using foundation::storage::provider::ExtendedFeature;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* NoString = "Failed to create String for IRI.";
constexpr const char* NoUri = "Failed to construct StorageURI for IRI.";

class StorageUriTest : public ProviderTest {
protected:
    void SetUp() override {
        ProviderTest::SetUp();
        provider = makeProvider();
        recorder.clear();
    }

    void createFile(const char16_t* location = u"java://test/a") const { provider->createFile(StorageIRI(location)); }

    std::unique_ptr<IProvider> provider;
    LogCapture log{static_cast<std::uint32_t>(Severity::Failure)};
};

TEST_F(StorageUriTest, EachCallLooksTheConstructorUpAndMakesStringAndObject) {
    for (int call = 0; call < 2; ++call) {
        recorder.clear();
        createFile();
        const auto calls = recorder.calls({.localFrames = false});
        ASSERT_GE(calls.size(), 4U);
        EXPECT_THAT(std::vector(calls.begin(), calls.begin() + 4),
                    ElementsAre("GetMethodID com/corvallen/storage/provider/StorageURI <init>(Ljava/lang/String;)V",
                                "NewString java://test/a",
                                "NewObject com/corvallen/storage/provider/StorageURI <init>(Ljava/lang/String;)V",
                                "DeleteLocalRef"));
    }
}

TEST_F(StorageUriTest, StringGoesToTheConstructorAndIsReleasedRightAfter) {
    createFile();
    const auto text = recorder.record("NewString").resultReference;
    EXPECT_EQ(recorder.record("NewObject").referenceArgument(0), text);
    EXPECT_EQ(recorder.records({.only = "DeleteLocalRef"}).at(0).targetReference, text);
}

TEST_F(StorageUriTest, ObjectGoesToTheMethodAndIsReleasedAfterIt) {
    createFile();
    const auto uri = recorder.record("NewObject").resultReference;
    EXPECT_EQ(recorder.record("CallVoidMethod createFile").referenceArgument(0), uri);
    const auto released = recorder.records({.only = "DeleteLocalRef"});
    ASSERT_EQ(released.size(), 2U);
    EXPECT_EQ(released[1].targetReference, uri);
    EXPECT_EQ(recorder.calls({.exceptionChecks = false, .localFrames = false}).back(), "DeleteLocalRef");
}

TEST_F(StorageUriTest, PlainTextArrivesAsItIs) {
    createFile(u"java://mount/folder/file.txt");
    EXPECT_THAT(javaCalls(), ElementsAre("createFile java://mount/folder/file.txt"));
}

TEST_F(StorageUriTest, WhatIsNotAsciiArrivesPercentEncodedAsUtf8) {
    createFile(u"java://test/\u00FC\u20AC\U0001F600");
    EXPECT_EQ(recorder.count("NewString java://test/%C3%BC%E2%82%AC%F0%9F%98%80"), 1U);
    EXPECT_THAT(javaCalls(), ElementsAre("createFile java://test/%C3%BC%E2%82%AC%F0%9F%98%80"));
}

TEST_F(StorageUriTest, AsciiThatAUriMayNotHoldArrivesEncoded) {
    createFile(u"java://test/a b\"<>");
    EXPECT_THAT(javaCalls(), ElementsAre("createFile java://test/a%20b%22%3C%3E"));
}

TEST_F(StorageUriTest, EscapesArriveAsTheyStand) {
    createFile(u"java://test/a%20b%2fc%2Fd");
    EXPECT_THAT(javaCalls(), ElementsAre("createFile java://test/a%20b%2fc%2Fd"));
}

TEST_F(StorageUriTest, SuccessLogsNothing) {
    createFile();
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(StorageUriTest, IsTraced) {
    LogCapture traced(static_cast<std::uint32_t>(Severity::Enter) | static_cast<std::uint32_t>(Severity::Exit));
    createFile();
    ASSERT_EQ(traced.records().size(), 2U);
    EXPECT_EQ(traced.records()[0].severity, Severity::Enter);
    EXPECT_THAT(traced.records()[0].text, ::testing::HasSubstr("JavaProvider::createStorageUri("));
    EXPECT_EQ(traced.records()[1].severity, Severity::Exit);
    EXPECT_EQ(traced.records()[1].text, traced.records()[0].text);
}

// ---- an empty location ----

TEST_F(StorageUriTest, EmptyLocationIsAUriOfANullString) {
    createFile(u"");
    EXPECT_EQ(recorder.count("NewString"), 0U);
    EXPECT_EQ(recorder.record("NewObject").objectArgument(0), nullptr);
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Failure, NoString, 0}));
    // The contract's StorageURI takes a null text for what it is.
    EXPECT_EQ(javaCalls().size(), 1U);
}

TEST_F(StorageUriTest, EmptyLocationReleasesTheObjectAlone) {
    createFile(u"");
    EXPECT_THAT(recorder.calls({.localFrames = false}),
                ElementsAre(StartsWith("GetMethodID"), "ExceptionCheck", StartsWith("NewObject"),
                            StartsWith("CallVoidMethod createFile"), "ExceptionCheck", "DeleteLocalRef"));
}

TEST_F(StorageUriTest, EmptyLocationLogsNothingWhileTheSeverityIsOff) {
    LogCapture others(AllSeverities & ~static_cast<std::uint32_t>(Severity::Failure));
    createFile(u"");
    EXPECT_THAT(others.texts(Severity::Failure), IsEmpty());
}

// ---- no string ----

TEST_F(StorageUriTest, StringWithoutMemoryIsABadAllocAndLogged) {
    recorder.fail({.call = "NewString", .failure = JniFailure::outOfMemory()});
    EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { createFile(); }));
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Failure, NoString, 0}));
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(recorder.count("NewObject"), 0U);
    EXPECT_THAT(javaCalls(), IsEmpty());
}

TEST_F(StorageUriTest, StringThatIsMissingWithoutReasonBecomesNull) {
    recorder.fail({.call = "NewString", .failure = JniFailure::silent()});
    createFile();
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Failure, NoString, 0}));
    EXPECT_EQ(recorder.record("NewObject").objectArgument(0), nullptr);
    EXPECT_EQ(javaCalls().size(), 1U);
}

// ---- no object ----

TEST_F(StorageUriTest, ObjectWithoutMemoryIsABadAllocAndLogged) {
    recorder.fail({.call = "NewObject", .failure = JniFailure::outOfMemory()});
    EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { createFile(); }));
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Failure, NoUri, 0}));
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(recorder.count("DeleteLocalRef"), 1U) << "the string is released while unwinding";
    EXPECT_THAT(javaCalls(), IsEmpty());
}

TEST_F(StorageUriTest, ObjectThatIsMissingWithoutReasonGoesToJavaAsNull) {
    recorder.fail({.call = "NewObject", .failure = JniFailure::silent()});
    createFile();
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{Severity::Failure, NoUri, 0}));
    EXPECT_EQ(recorder.record("CallVoidMethod createFile").objectArgument(0), nullptr);
    EXPECT_THAT(javaCalls(), ElementsAre("createFile null"));
    EXPECT_EQ(recorder.count("DeleteLocalRef"), 1U) << "only the string";
}

TEST_F(StorageUriTest, EmptyLocationWithoutObjectLogsBothLines) {
    recorder.fail({.call = "NewObject", .failure = JniFailure::silent()});
    createFile(u"");
    EXPECT_THAT(log.texts(), ElementsAre(NoString, NoUri));
}

TEST_F(StorageUriTest, FailureIsTracedAsThrowing) {
    LogCapture whole(AllSeverities);
    recorder.fail({.call = "NewObject", .failure = JniFailure::outOfMemory()});
    EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { createFile(); }));
    ASSERT_EQ(whole.records().size(), 3U);
    EXPECT_EQ(whole.records()[1], (LogRecord{Severity::Failure, NoUri, 1})) << "logged before it is thrown";
    EXPECT_TRUE(whole.records()[2].text.ends_with(" [throw]"));
}

// ---- no constructor ----

TEST_F(StorageUriTest, MissingConstructorIsNamed) {
    recorder.fail({.call = "GetMethodID com/corvallen/storage/provider/StorageURI",
                   .failure = JniFailure::exception("java/lang/NoSuchMethodError")});
    EXPECT_EQ(internalErrorOf([&] { createFile(); }),
              "Method constructor not found.\njava.lang.NoSuchMethodError: made to fail by a test");
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(recorder.count("NewString"), 0U);
    EXPECT_THAT(javaCalls(), IsEmpty());
}

TEST_F(StorageUriTest, ConstructorThatIsMissingWithoutReasonMakesNoObject) {
    recorder.fail({.call = "GetMethodID com/corvallen/storage/provider/StorageURI", .failure = JniFailure::silent()});
    createFile();
    EXPECT_EQ(recorder.count("NewObject"), 0U) << "Java would not survive it";
    EXPECT_THAT(log.texts(), ElementsAre(NoUri));
    EXPECT_THAT(javaCalls(), ElementsAre("createFile null"));
}

// ---- a class of the contract that breaks its rules ----

class RogueStorageUriTest : public ProviderTest {
protected:
    /// A provider whose loader has a StorageURI of its own.
    [[nodiscard]] std::unique_ptr<IProvider> makeOver(const std::string& jarOfStorageUri) {
        const JniRecorder::Unrecorded unrecorded;
        const std::string jars = jarOfStorageUri + ":" TEST_CONTRACT_JAR ":" TEST_ISOLATED_BACKEND_JAR;
        jobject backEnd = callStaticObject(env(), "com/corvallen/storage/test/IsolatedLoader", "childFirst",
                                           {"com.corvallen.storage.test.isolated.IsolatedBackend", jars});
        auto provider = std::make_unique<JavaProvider>(handle, backEnd);
        env()->DeleteLocalRef(backEnd);
        return provider;
    }
};

TEST_F(RogueStorageUriTest, ConstructorThatThrowsIsABadAllocAndLogged) {
    const auto provider = makeOver(TEST_ROGUE_CONTRACT_JAR);
    LogCapture log(static_cast<std::uint32_t>(Severity::Failure));
    recorder.clear();
    EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { provider->createFile(StorageIRI(u"java://test/refused")); }));
    EXPECT_THAT(log.texts(), ElementsAre(NoUri));
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE) << "cleared, and not translated";
    EXPECT_THAT(javaCalls(), IsEmpty());
    EXPECT_EQ(recorder.count("CallVoidMethod"), 0U);
}

TEST_F(RogueStorageUriTest, ClassComesFromTheObjectsOwnLoader) {
    const auto provider = makeOver(TEST_ROGUE_CONTRACT_JAR);
    provider->createFile(StorageIRI(u"java://test/accepted"));
    EXPECT_THAT(javaCalls(), ElementsAre("createFile java://test/accepted"));
}

TEST_F(RogueStorageUriTest, EntriesConstantsAndPublishersComeFromTheObjectsOwnLoaderToo) {
    const auto provider = makeOver(TEST_ROGUE_CONTRACT_JAR);
    const StorageIRI folder(u"java://test/folder");
    const auto listing = provider->listAll(folder);
    ASSERT_TRUE(listing->hasMore());
    listing->advance();
    EXPECT_EQ(listing->getCurrent().name(), u"isolated");
    EXPECT_TRUE(provider->hasFeature(ExtendedFeature::RecursiveFolderRemoval));
    EXPECT_FALSE(provider->hasFeature(ExtendedFeature::RecursiveChangeEvents));
    EXPECT_EQ(provider->getFileAttributes(folder).size(), 1U);
    provider->startChangeNotification(folder, [](auto&&...) {});
    EXPECT_THAT(javaCalls(), ElementsAre("listFolder java://test/folder", "hasFeature RecursiveFolderRemoval",
                                         "hasFeature RecursiveChangeEvents", "getFileAttributes java://test/folder",
                                         "publishEventsFor java://test/folder"));
}

TEST_F(RogueStorageUriTest, SecondLocationOfAMoveThatIsRefusedReleasesTheFirst) {
    const auto provider = makeOver(TEST_ROGUE_CONTRACT_JAR);
    recorder.clear();
    EXPECT_TRUE(throwsExactly<InternalBadAlloc>(
        [&] { provider->moveFile(StorageIRI(u"java://test/a"), StorageIRI(u"java://test/refused")); }));
    const auto made = recorder.records({.only = "NewObject"});
    ASSERT_EQ(made.size(), 2U);
    EXPECT_EQ(recorder.records({.only = "DeleteLocalRef"}).back().targetReference, made[0].resultReference);
    EXPECT_EQ(recorder.count("CallVoidMethod"), 0U);
}

TEST_F(RogueStorageUriTest, ClassWithoutStringConstructorIsNamed) {
    const auto provider = makeOver(TEST_URI_WITHOUT_CONSTRUCTOR_JAR);
    recorder.clear();
    EXPECT_THAT(internalErrorOf([&] { static_cast<void>(provider->fileExists(StorageIRI(u"java://test/a"))); }),
                StartsWith("Method constructor not found.\njava.lang.NoSuchMethodError: "));
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(recorder.count("NewString"), 0U);
}

// ---- a provider without a Java object ----

TEST_F(RogueStorageUriTest, ProviderWithoutObjectFailsWithAClearError) {
    const JavaProvider provider(handle, nullptr);
    EXPECT_EQ(internalErrorOf([&] {
                  static_cast<void>(static_cast<const IProvider&>(provider).fileExists(StorageIRI(u"java://test/a")));
              }),
              "The provider has no Java object, or classes of its contract are missing");
    EXPECT_EQ(recorder.liveLocals(), 0);
}

}  // namespace
}  // namespace storage::javaprovider::test
