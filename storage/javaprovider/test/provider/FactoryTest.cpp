// Factories, by class name and over an instance, made by the entry points.
#include <gmock/gmock.h>

#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "foundation/storage/provider/PhysicalProviderFactory.h"
#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "storage/javaprovider/EntryPoints.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::PhysicalProviderFactory;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class FactoryTest : public ProviderTest {
protected:
    [[nodiscard]] std::shared_ptr<PhysicalProviderFactory> factoryOf(const std::string& className) const {
        return buildPhysicalFactory(handle, className);
    }
    [[nodiscard]] std::shared_ptr<PhysicalProviderFactory> factoryOf(jobject instance) const {
        return buildPhysicalFactory(handle, instance);
    }
    /// The text of the failure to create a provider, which leaves nothing behind.
    [[nodiscard]] std::string failureOf(const PhysicalProviderFactory& factory) {
        const long shares = handle.use_count();
        const std::string text = internalErrorOf([&] { static_cast<void>(factory.createProvider()); });
        EXPECT_EQ(recorder.liveLocals(), 0);
        EXPECT_EQ(recorder.liveGlobals(), 0);
        EXPECT_EQ(handle.use_count(), shares);
        EXPECT_EQ(takePendingException(env()), "");
        return text;
    }
    [[nodiscard]] jobject globalBackEnd() const {
        const JniRecorder::Unrecorded unrecorded;
        return env()->NewGlobalRef(newBackEnd());
    }
};

// ---- construction ----

TEST_F(FactoryTest, ConstructionCallsNeitherJavaNorTheMachine) {
    jobject instance = newBackEnd();
    const auto byName = factoryOf(ScriptedProviderClass);
    const auto byInstance = factoryOf(instance);
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    EXPECT_EQ(handle->lookups(), 0U);
}

TEST_F(FactoryTest, ConstructionNeedsNoMachine) {
    EXPECT_NE(buildPhysicalFactory(nullptr, ScriptedProviderClass), nullptr);
    handle->remove();
    EXPECT_NE(factoryOf(ScriptedProviderClass), nullptr);
}

TEST_F(FactoryTest, DestructionCallsNothing) {
    jobject instance = newBackEnd();
    auto byName = factoryOf(ScriptedProviderClass);
    auto byInstance = factoryOf(instance);
    byName.reset();
    byInstance.reset();
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    EXPECT_EQ(env()->GetObjectRefType(instance), JNILocalRefType) << "the instance is not the factory's to delete";
    EXPECT_EQ(handle.use_count(), 1);
}

TEST_F(FactoryTest, RootIsJavaInBothModes) {
    EXPECT_EQ(factoryOf(ScriptedProviderClass)->getRootIri(), StorageIRI(u"java://"));
    EXPECT_EQ(factoryOf(newBackEnd())->getRootIri(), StorageIRI(u"java://"));
    EXPECT_EQ(factoryOf("no/such/Class")->getRootIri(), StorageIRI(u"java://"));
}

// ---- by class name ----

TEST_F(FactoryTest, ClassNameGivesADistinctObjectForEachProvider) {
    const auto factory = factoryOf(ScriptedProviderClass);
    const auto first = factory->createProvider();
    const auto second = factory->createProvider();
    EXPECT_NE(first, second);
    EXPECT_EQ(script::instances(env()), 2);
    const auto made = recorder.records({.only = "NewObject"});
    ASSERT_EQ(made.size(), 2U);
    EXPECT_EQ(recorder.liveGlobals(), 10);
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_F(FactoryTest, ClassIsFoundInstantiatedAndHandedOver) {
    const auto provider = factoryOf(ScriptedProviderClass)->createProvider();
    expectClassFoundInstantiatedAndHandedOver();
}

TEST_F(FactoryTest, ProviderOutlivesTheFactory) {
    auto factory = factoryOf(ScriptedProviderClass);
    const auto provider = factory->createProvider();
    EXPECT_EQ(handle.use_count(), 3);
    factory.reset();
    EXPECT_EQ(handle.use_count(), 2);
    provider->createFile(StorageIRI(u"java://test/a"));
    EXPECT_THAT(javaCalls(), ElementsAre("createFile java://test/a"));
}

TEST_F(FactoryTest, FactoryOutlivesItsProviders) {
    const auto factory = factoryOf(ScriptedProviderClass);
    factory->createProvider().reset();
    factory->createProvider().reset();
    EXPECT_THAT(javaCalls(), ElementsAre("dispose", "dispose"));
}

TEST_F(FactoryTest, MissingClassIsReportedByEachCall) {
    const auto factory = factoryOf("com/corvallen/storage/test/Nowhere");
    for (int call = 0; call < 2; ++call) {
        EXPECT_EQ(failureOf(*factory),
                  "Failed to find Java Provider implementation class java.lang.NoClassDefFoundError: "
                  "com/corvallen/storage/test/Nowhere");
    }
    EXPECT_EQ(recorder.count("FindClass com/corvallen/storage/test/Nowhere"), 2U) << "nothing is kept of a failure";
}

TEST_F(FactoryTest, DottedNameIsAMissingClass) {
    EXPECT_EQ(failureOf(*factoryOf("com.corvallen.storage.test.ScriptedProvider")),
              "Failed to find Java Provider implementation class java.lang.NoClassDefFoundError: "
              "com.corvallen.storage.test.ScriptedProvider");
}

TEST_F(FactoryTest, EmptyNameIsAMissingClassAndNoInstance) {
    EXPECT_THAT(failureOf(*factoryOf("")),
                StartsWith("Failed to find Java Provider implementation class java.lang.NoClassDefFoundError"));
}

TEST_F(FactoryTest, ConstructorThatThrowsIsReported) {
    EXPECT_EQ(failureOf(*factoryOf(testClass("ThrowingConstructorProvider"))),
              "Failed to instantiate Java Provider implementation. java.lang.IllegalStateException: thrown by the "
              "constructor");
}

TEST_F(FactoryTest, AbstractClassIsReported) {
    EXPECT_THAT(failureOf(*factoryOf(testClass("AbstractProvider"))),
                StartsWith("Failed to instantiate Java Provider implementation. java.lang.InstantiationException"));
}

TEST_F(FactoryTest, ClassThatCannotBeInitialisedCountsAsMissing) {
    EXPECT_THAT(failureOf(*factoryOf(testClass("StaticInitFailsProvider"))),
                StartsWith("Failed to find Java Provider implementation class java.lang."));
}

TEST_F(FactoryTest, ObjectWithoutMemoryIsReported) {
    const auto factory = factoryOf(ScriptedProviderClass);
    recorder.fail({.call = "NewObject", .failure = JniFailure::outOfMemory()});
    EXPECT_EQ(failureOf(*factory),
              "Failed to instantiate Java Provider implementation. java.lang.OutOfMemoryError: made to fail by a "
              "test");
}

TEST_F(FactoryTest, ClassWithoutDefaultConstructorIsNamedByMethodAndSignature) {
    EXPECT_THAT(failureOf(*factoryOf(testClass("NoDefaultConstructorProvider"))),
                StartsWith("Method <init> with signature ()V not found.\njava.lang.NoSuchMethodError: "));
}

TEST_F(FactoryTest, ClassThatIsNoProviderIsRefused) {
    mayLeave("FindClass java/lang/Object");
    mayLeave("NewObject java/lang/Object");
    EXPECT_THAT(failureOf(*factoryOf("java/lang/Object")), StartsWith("Method fileExists with signature "));
}

TEST_F(FactoryTest, CallAfterAFailureTriesAgainFromTheStart) {
    const auto factory = factoryOf(ScriptedProviderClass);
    recorder.fail({.call = std::string("FindClass ") + ScriptedProviderClass,
                   .failure = JniFailure::exception("java/lang/NoClassDefFoundError")});
    EXPECT_THAT(failureOf(*factory), StartsWith("Failed to find Java Provider implementation class "));
    EXPECT_NE(factory->createProvider(), nullptr);
}

TEST_F(FactoryTest, RemovedMachineIsReportedAndMayComeBack) {
    const auto factory = factoryOf(ScriptedProviderClass);
    handle->remove();
    EXPECT_EQ(failureOf(*factory), "JVM remvoed");
    EXPECT_THAT(recorder.calls(), IsEmpty());
    handle->restore();
    EXPECT_NE(factory->createProvider(), nullptr);
}

TEST_F(FactoryTest, EmptyHandleIsReported) {
    EXPECT_EQ(internalErrorOf(
                  [] { static_cast<void>(buildPhysicalFactory(nullptr, ScriptedProviderClass)->createProvider()); }),
              "JVM remvoed");
}

// ---- over an instance ----

TEST_F(FactoryTest, InstanceIsSharedByAllProviders) {
    jobject instance = globalBackEnd();
    const auto factory = factoryOf(instance);
    auto first = factory->createProvider();
    auto second = factory->createProvider();
    EXPECT_NE(first, second);
    EXPECT_EQ(script::instances(env()), 1);
    EXPECT_EQ(recorder.count("NewObject"), 0U);
    first.reset();
    EXPECT_THAT(javaCalls(), ElementsAre("dispose"));
    second.reset();
    EXPECT_THAT(javaCalls(), ElementsAre("dispose", "dispose"));
    EXPECT_EQ(env()->GetObjectRefType(instance), JNIGlobalRefType) << "the host's reference stays the host's";
    env()->DeleteGlobalRef(instance);
}

TEST_F(FactoryTest, InstanceModeAddsNoCallToThoseOfTheProvider) {
    jobject instance = globalBackEnd();
    const auto provider = factoryOf(instance)->createProvider();
    const auto calls = recorder.calls();
    EXPECT_EQ(calls.at(0), "PushLocalFrame");
    EXPECT_EQ(calls.at(1), "GetObjectClass");
    EXPECT_EQ(recorder.count("PushLocalFrame"), 1U);
    EXPECT_EQ(recorder.records({.only = "NewGlobalRef"}).at(0).target, instance) << "the reference as it was given";
    env()->DeleteGlobalRef(instance);
}

TEST_F(FactoryTest, InstanceModeReportsARemovedMachine) {
    jobject instance = globalBackEnd();
    const auto factory = factoryOf(instance);
    handle->remove();
    EXPECT_EQ(failureOf(*factory), "JVM remvoed");
    env()->DeleteGlobalRef(instance);
}

TEST_F(FactoryTest, InstanceOfNoProviderIsRefused) {
    EXPECT_THAT(failureOf(*factoryOf(newObject(env(), "java/lang/Object"))),
                StartsWith("Method fileExists with signature "));
}

// ---- from many threads ----

TEST_F(FactoryTest, ManyThreadsCreateProvidersAtOnce) {
    constexpr int Threads = 16;
    constexpr int Each = 20;
    const auto factory = factoryOf(ScriptedProviderClass);
    recorder.keepCalls(false);
    std::latch start(Threads);
    std::vector<std::jthread> threads;
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            for (int n = 0; n < Each; ++n) {
                const auto provider = factory->createProvider();
                EXPECT_FALSE(provider->fileExists(StorageIRI(u"java://test/a")));
            }
        });
    }
    threads.clear();
    EXPECT_EQ(script::instances(env()), Threads * Each);
    EXPECT_EQ(recorder.liveGlobals(), Threads * Each) << "one kept class for each provider";
    EXPECT_EQ(handle->attachments(), handle->detachments());
    EXPECT_EQ(handle.use_count(), 2);
}

}  // namespace
}  // namespace storage::javaprovider::test
