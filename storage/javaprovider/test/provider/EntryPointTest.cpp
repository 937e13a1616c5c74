// Providers made by the entry points, by class name and over an instance.
#include "storage/javaprovider/EntryPoints.h"

#include <gmock/gmock.h>

#include <boost/property_tree/ptree.hpp>
#include <memory>
#include <string>

#include "foundation/storage/provider/IConfigurableProvider.h"
#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ExtendedFeature;
using foundation::storage::provider::IConfigurableProvider;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class EntryPointTest : public ProviderTest {
protected:
    const StorageIRI location{u"java://test/a"};

    [[nodiscard]] std::unique_ptr<IProvider> build(const std::string& className) const {
        return std::unique_ptr<IProvider>(buildProvider(handle, className));
    }
    [[nodiscard]] std::unique_ptr<IProvider> build(jobject instance) const {
        return std::unique_ptr<IProvider>(buildProvider(handle, instance));
    }
    /// The text of the failure to build by that name, which leaves nothing behind.
    [[nodiscard]] std::string failureOf(const std::string& className) {
        const std::string text = internalErrorOf([&] { static_cast<void>(build(className)); });
        EXPECT_EQ(recorder.liveLocals(), 0);
        EXPECT_EQ(recorder.liveGlobals(), 0);
        EXPECT_EQ(handle.use_count(), 1);
        EXPECT_EQ(takePendingException(env()), "");
        return text;
    }
};

// ---- by class name ----

TEST_F(EntryPointTest, ClassNameGivesAWorkingProvider) {
    const auto provider = build(ScriptedProviderClass);
    EXPECT_EQ(script::instances(env()), 1);
    provider->createFile(location);
    EXPECT_THAT(javaCalls(), ElementsAre("createFile java://test/a"));
}

TEST_F(EntryPointTest, ClassIsFoundInstantiatedAndHandedOver) {
    const auto provider = build(ScriptedProviderClass);
    expectClassFoundInstantiatedAndHandedOver();
}

TEST_F(EntryPointTest, ClassAndObjectAreLeftToTheFrameWhichReleasesThem) {
    const auto provider = build(ScriptedProviderClass);
    const auto cls = recorder.record(std::string("FindClass ") + ScriptedProviderClass).resultReference;
    const auto object = recorder.record("NewObject").resultReference;
    for (const JniCall& call : recorder.records({.only = "DeleteLocalRef"})) {
        EXPECT_NE(call.targetReference, cls);
        EXPECT_NE(call.targetReference, object);
    }
    EXPECT_EQ(recorder.calls().back(), "PopLocalFrame");
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_EQ(recorder.liveGlobals(), 5);
}

TEST_F(EntryPointTest, HostOwnsAndDeletesTheProvider) {
    IProvider* provider = buildProvider(handle, ScriptedProviderClass);
    EXPECT_EQ(handle.use_count(), 2);
    delete provider;
    EXPECT_EQ(handle.use_count(), 1);
    EXPECT_THAT(javaCalls(), ElementsAre("dispose"));
}

TEST_F(EntryPointTest, PrivateConstructorIsGoodEnough) {
    EXPECT_NE(build(testClass("PrivateConstructorProvider")), nullptr);
}

TEST_F(EntryPointTest, EachCallMakesAnObjectOfItsOwn) {
    const auto first = build(ScriptedProviderClass);
    const auto second = build(ScriptedProviderClass);
    EXPECT_EQ(script::instances(env()), 2);
}

TEST_F(EntryPointTest, DottedNameFailsWithJavasDescription) {
    EXPECT_EQ(failureOf("com.corvallen.storage.test.ScriptedProvider"),
              "java.lang.NoClassDefFoundError: com.corvallen.storage.test.ScriptedProvider");
}

TEST_F(EntryPointTest, MissingClassFailsWithJavasDescription) {
    EXPECT_EQ(failureOf("com/corvallen/storage/test/Nowhere"),
              "java.lang.NoClassDefFoundError: com/corvallen/storage/test/Nowhere");
}

TEST_F(EntryPointTest, EmptyNameFailsWithJavasDescription) {
    EXPECT_THAT(failureOf(""), StartsWith("java.lang.NoClassDefFoundError"));
}

TEST_F(EntryPointTest, ConstructorThatThrowsFailsWithItsDescription) {
    EXPECT_EQ(failureOf(testClass("ThrowingConstructorProvider")),
              "java.lang.IllegalStateException: thrown by the constructor");
}

TEST_F(EntryPointTest, AbstractClassFailsWithJavasDescription) {
    EXPECT_THAT(failureOf(testClass("AbstractProvider")), StartsWith("java.lang.InstantiationException"));
}

TEST_F(EntryPointTest, ClassWithoutDefaultConstructorIsNamedByMethodAndSignature) {
    EXPECT_THAT(failureOf(testClass("NoDefaultConstructorProvider")),
                StartsWith("Method <init> with signature ()V not found.\njava.lang.NoSuchMethodError: "));
}

TEST_F(EntryPointTest, StaticInitialiserThatFailsIsDescribedEachTime) {
    // Java runs the initialiser once for the life of the process, and later only says that it failed.
    const auto later = StartsWith("java.lang.NoClassDefFoundError: Could not initialize class");
    EXPECT_THAT(failureOf(testClass("StaticInitFailsProvider")), AnyOf("java.lang.ExceptionInInitializerError", later));
    EXPECT_THAT(failureOf(testClass("StaticInitFailsProvider")), later);
}

TEST_F(EntryPointTest, ClassThatIsNoProviderIsRefused) {
    mayLeave("FindClass java/lang/Object");
    mayLeave("NewObject java/lang/Object");
    EXPECT_THAT(failureOf("java/lang/Object"), StartsWith("Method fileExists with signature "));
}

TEST_F(EntryPointTest, ObjectWithoutMemoryIsDescribed) {
    recorder.fail({.call = std::string("NewObject ") + ScriptedProviderClass, .failure = JniFailure::outOfMemory()});
    EXPECT_EQ(failureOf(ScriptedProviderClass), "java.lang.OutOfMemoryError: made to fail by a test");
}

TEST_F(EntryPointTest, ClassNameNeedsTheMachine) {
    handle->remove();
    EXPECT_EQ(failureOf(ScriptedProviderClass), "JVM remvoed");
    EXPECT_THAT(recorder.calls(), IsEmpty());
    EXPECT_EQ(internalErrorOf([&] { static_cast<void>(buildProvider(nullptr, ScriptedProviderClass)); }),
              "JVM remvoed");
}

TEST_F(EntryPointTest, MachineThatGoesAwayBeforeTheHandOverIsReported) {
    handle->removeAfter(2);  // the guard of the search takes two looks; the provider's own finds nothing
    EXPECT_EQ(failureOf(ScriptedProviderClass), "JVM remvoed");
    EXPECT_EQ(script::instances(env()), 1);
}

TEST_F(EntryPointTest, NextAttemptAfterAFailureSucceeds) {
    EXPECT_THAT(failureOf(testClass("Nowhere")), StartsWith("java.lang.NoClassDefFoundError"));
    EXPECT_NE(build(ScriptedProviderClass), nullptr);
}

// ---- over an instance ----

TEST_F(EntryPointTest, LocalReferenceMayBeDeletedAfterwards) {
    jobject instance = newBackEnd();
    const auto provider = build(instance);
    env()->DeleteLocalRef(instance);
    recorder.clear();
    script::answer(env(), "folderExists", true);
    EXPECT_TRUE(provider->folderExists(location));
}

TEST_F(EntryPointTest, GlobalReferenceMayBeDeletedAfterwards) {
    jobject local = newBackEnd();
    jobject global = env()->NewGlobalRef(local);
    env()->DeleteLocalRef(local);
    const auto provider = build(global);
    env()->DeleteGlobalRef(global);
    recorder.clear();
    provider->createFolder(location);
    EXPECT_THAT(javaCalls(), ElementsAre("createFolder java://test/a"));
}

TEST_F(EntryPointTest, GlobalReferenceServesOnAnotherThread) {
    jobject global = env()->NewGlobalRef(newBackEnd());
    std::unique_ptr<IProvider> provider;
    onFreshThread([&] { provider = build(global); });
    env()->DeleteGlobalRef(global);
    provider->createFile(location);
    EXPECT_THAT(javaCalls(), ElementsAre("createFile java://test/a"));
}

TEST_F(EntryPointTest, InstanceIsUsedAsItIs) {
    jobject instance = newBackEnd();
    const auto provider = build(instance);
    EXPECT_EQ(script::instances(env()), 1) << "the one that was made by the test";
    EXPECT_EQ(recorder.records({.only = "NewGlobalRef"}).at(0).target, instance);
    EXPECT_EQ(recorder.count("NewObject"), 0U);
}

TEST_F(EntryPointTest, NullInstanceGivesAProviderThatFails) {
    const auto provider = build(static_cast<jobject>(nullptr));
    ASSERT_NE(provider, nullptr);
    EXPECT_TRUE(throwsExactly<InternalError>([&] { provider->createFile(location); }));
    EXPECT_TRUE(throwsExactly<InternalError>([&] { static_cast<void>(provider->fileExists(location)); }));
    EXPECT_TRUE(throwsExactly<InternalError>([&] { provider->moveFolder(location, location); }));
    EXPECT_TRUE(throwsExactly<InternalError>([&] { static_cast<void>(provider->listAll(location)); }));
    EXPECT_TRUE(throwsExactly<InternalError>([&] { static_cast<void>(provider->getFileAttributes(location)); }));
    EXPECT_TRUE(throwsExactly<InternalError>([&] { static_cast<void>(provider->openReadOnlyByteStream(location)); }));
    EXPECT_TRUE(throwsExactly<InternalError>([&] { provider->startChangeNotification(location, {}); }));
    EXPECT_TRUE(throwsExactly<InternalError>(
        [&] { static_cast<void>(provider->hasFeature(ExtendedFeature::RecursiveFolderRemoval)); }));
    boost::property_tree::ptree settings;
    settings.put("gds.enableContentCache", "true");
    EXPECT_TRUE(
        throwsExactly<InternalError>([&] { dynamic_cast<IConfigurableProvider&>(*provider).configure(settings); }));
}

TEST_F(EntryPointTest, InstanceOfNoProviderIsRefused) {
    jobject instance = newObject(env(), "java/lang/Object");
    EXPECT_THAT(internalErrorOf([&] { static_cast<void>(build(instance)); }),
                StartsWith("Method fileExists with signature "));
    EXPECT_EQ(handle.use_count(), 1);
}

TEST_F(EntryPointTest, InstanceNeedsTheMachine) {
    jobject instance = newBackEnd();
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { static_cast<void>(build(instance)); }), "JVM remvoed");
}

// ---- a back end that only a loader of its own knows ----

TEST_F(EntryPointTest, BackEndOfALoaderOfItsOwnWorks) {
    jobject instance =
        callStaticObject(env(), "com/corvallen/storage/test/IsolatedLoader", "parentFirst",
                         {"com.corvallen.storage.test.isolated.IsolatedBackend", TEST_ISOLATED_BACKEND_JAR});
    const auto provider = build(instance);
    EXPECT_TRUE(provider->fileExists(location));
    const auto error = thrownBy<ProviderError>([&] { provider->createFile(StorageIRI(u"java://test/missing")); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), foundation::storage::provider::ErrorCode::NotFound);
}

TEST_F(EntryPointTest, BackEndOfALoaderOfItsOwnIsNotFoundByName) {
    EXPECT_THAT(failureOf("com/corvallen/storage/test/isolated/IsolatedBackend"),
                StartsWith("java.lang.NoClassDefFoundError"));
}

}  // namespace
}  // namespace storage::javaprovider::test
