// A provider that cannot be made although its object has the whole contract.
#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>

#include "JavaProvider.h"
#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "support/ContractMethods.h"
#include "support/LogCapture.h"

namespace storage::javaprovider::test {
namespace {

using foundation::log::AllSeverities;
using foundation::log::Severity;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ConstructionFailureTest : public ProviderTest {
protected:
    void SetUp() override {
        ProviderTest::SetUp();
        backEnd = newBackEnd();
    }

    void makeOne() const { const JavaProvider provider(handle, backEnd); }

    jobject backEnd = nullptr;
};

// ---- the object cannot be held ----

TEST_F(ConstructionFailureTest, ObjectThatCannotBeHeldIsAPlainBadAlloc) {
    recorder.fail({.call = "NewGlobalRef", .failure = JniFailure::silent()});
    EXPECT_TRUE(throwsExactly<std::bad_alloc>([&] { makeOne(); })) << "not the framework's wrapper";
    EXPECT_EQ(recorder.liveGlobals(), 0);
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(handle.use_count(), 1);
}

TEST_F(ConstructionFailureTest, ObjectThatCannotBeHeldIsLogged) {
    LogCapture log(AllSeverities);
    recorder.fail({.call = "NewGlobalRef", .failure = JniFailure::silent()});
    EXPECT_TRUE(throwsExactly<std::bad_alloc>([&] { makeOne(); }));
    EXPECT_THAT(log.texts(Severity::Failure), ElementsAre("Failed to get global ref to Provider"));
}

TEST_F(ConstructionFailureTest, NothingIsLoggedOfItWhileTheSeverityIsOff) {
    LogCapture log(AllSeverities & ~static_cast<std::uint32_t>(Severity::Failure));
    recorder.fail({.call = "NewGlobalRef", .failure = JniFailure::silent()});
    EXPECT_TRUE(throwsExactly<std::bad_alloc>([&] { makeOne(); }));
    EXPECT_THAT(log.texts(Severity::Failure), IsEmpty());
}

TEST_F(ConstructionFailureTest, JavaErrorThatCameWithItIsCleared) {
    LogCapture log(static_cast<std::uint32_t>(Severity::Failure));
    recorder.fail({.call = "NewGlobalRef", .failure = JniFailure::outOfMemory()});
    EXPECT_TRUE(throwsExactly<std::bad_alloc>([&] { makeOne(); }));
    EXPECT_THAT(log.texts(), ElementsAre("Failed to get global ref to Provider"));
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(recorder.liveGlobals(), 0);
}

TEST_F(ConstructionFailureTest, NoClassIsSearchedForAnObjectThatCannotBeHeld) {
    recorder.fail({.call = "NewGlobalRef", .failure = JniFailure::silent()});
    EXPECT_TRUE(throwsExactly<std::bad_alloc>([&] { makeOne(); }));
    EXPECT_EQ(recorder.count("FindClass"), 0U);
    EXPECT_EQ(recorder.count("NewGlobalRef"), 1U);
}

TEST_F(ConstructionFailureTest, NextAttemptSucceeds) {
    recorder.fail({.call = "NewGlobalRef", .failure = JniFailure::silent()});
    EXPECT_TRUE(throwsExactly<std::bad_alloc>([&] { makeOne(); }));
    EXPECT_NO_THROW(makeOne());
}

// ---- a class of the contract is not found ----

class MissingClassTest : public ConstructionFailureTest, public ::testing::WithParamInterface<std::size_t> {
protected:
    /// Makes everybody deny knowing the class: the object's loader, and FindClass after all loaders.
    void hide() {
        std::string slashed = HeldClasses.at(GetParam());
        std::replace(slashed.begin(), slashed.end(), '.', '/');
        // Before it, one loader call finds each class; the platform loader, asked after this failure, knows none.
        recorder.fail({.call = "CallObjectMethod loadClass",
                       .occurrence = GetParam() + 1,
                       .failure = JniFailure::exception("java/lang/ClassNotFoundException")});
        recorder.fail(
            {.call = "FindClass " + slashed, .failure = JniFailure::exception("java/lang/NoClassDefFoundError")});
    }
};

TEST_P(MissingClassTest, MissingClassIsReportedWithJavasOwnWords) {
    hide();
    EXPECT_EQ(internalErrorOf([&] { makeOne(); }), "java.lang.NoClassDefFoundError: made to fail by a test");
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(handle.use_count(), 1);
}

TEST_P(MissingClassTest, ReferencesMadeSoFarAreNotReleased) {
    hide();
    EXPECT_TRUE(throwsExactly<InternalError>([&] { makeOne(); }));
    EXPECT_EQ(recorder.liveGlobals(), static_cast<long>(1 + GetParam())) << "the object and the classes before";
    EXPECT_EQ(recorder.count("DeleteGlobalRef"), 0U);
    EXPECT_THAT(javaCalls(), IsEmpty()) << "the object is not disposed of";
}

TEST_P(MissingClassTest, NoFurtherClassIsSearched) {
    hide();
    EXPECT_TRUE(throwsExactly<InternalError>([&] { makeOne(); }));
    EXPECT_EQ(recorder.count("NewStringUTF"), GetParam() + 1);
}

INSTANTIATE_TEST_SUITE_P(Contract, MissingClassTest, ::testing::Range<std::size_t>(0, HeldClasses.size()),
                         [](const auto& tested) {
                             const std::string name = HeldClasses.at(tested.param);
                             return name.substr(name.rfind('.') + 1);
                         });

TEST_F(ConstructionFailureTest, ClassThatNobodyExplainsIsLeftOut) {
    // Only a broken machine does this; the provider is made, and what needs the class fails.
    recorder.fail({.call = "CallObjectMethod loadClass", .failure = JniFailure::silent()});
    recorder.fail({.call = "CallObjectMethod loadClass", .failure = JniFailure::silent()});
    recorder.fail({.call = "FindClass com/corvallen/storage/provider/StorageURI", .failure = JniFailure::silent()});
    const JavaProvider provider(handle, backEnd);
    EXPECT_TRUE(throwsExactly<InternalError>(
        [&] { static_cast<void>(static_cast<const IProvider&>(provider).fileExists(StorageIRI(u"java://test/a"))); }));
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_F(ConstructionFailureTest, ClassKnownToAParentLoaderIsFoundThere) {
    recorder.fail({.call = "CallObjectMethod loadClass", .failure = JniFailure::silent()});
    EXPECT_NO_THROW(makeOne());
    EXPECT_EQ(recorder.count("CallObjectMethod getParent"), 2U) << "of the application's and of the platform's loader";
    EXPECT_EQ(recorder.count("FindClass com/corvallen/storage/provider/StorageURI"), 1U);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE) << "what the platform's loader threw";
}

}  // namespace
}  // namespace storage::javaprovider::test
