// The entry point of the plain name, found the way a host finds it that was not built with the library.
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "foundation/storage/provider/PhysicalProviderFactory.h"
#include "provider/Script.h"
#include "provider/ThrownErrors.h"
#include "support/FakeJVM.h"
#include "support/JavaHelpers.h"
#include "support/JvmTest.h"
#include "support/LogCapture.h"

#ifdef COUNTS_COVERAGE
/// The library is unloaded here, and what counts its lines keeps the name of its file.
extern "C" const char* __lsan_default_suppressions() { return "leak:strdup"; }
#endif

namespace storage::javaprovider::test {
namespace {

using foundation::log::AllSeverities;
using foundation::log::Severity;
using foundation::storage::provider::PhysicalProviderFactory;
using foundation::storage::provider::StorageIRI;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* Scripted = "com/corvallen/storage/test/ScriptedProvider";

/// The library, loaded at run time for as long as this lives.
class LoadedLibrary {
public:
    using BuildFactory = void (*)(std::shared_ptr<jvm_interface::JVM>, const char*,
                                  std::shared_ptr<PhysicalProviderFactory>&);

    LoadedLibrary() : m_library(::dlopen(LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL)) {
        if (m_library == nullptr) {
            throw std::runtime_error(::dlerror());
        }
        m_build = reinterpret_cast<BuildFactory>(::dlsym(m_library, "buildPhysicalFactory_V1"));
        if (m_build == nullptr) {
            throw std::runtime_error(::dlerror());
        }
    }
    ~LoadedLibrary() { ::dlclose(m_library); }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    [[nodiscard]] BuildFactory build() const noexcept { return m_build; }
    [[nodiscard]] static bool isLoaded() {
        void* found = ::dlopen(LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD);
        return found != nullptr && ::dlclose(found) == 0;
    }

private:
    void* m_library;
    BuildFactory m_build = nullptr;
};

/// A factory of the test's own, to see whether it is kept or released.
class OwnFactory final : public PhysicalProviderFactory {
public:
    [[nodiscard]] std::shared_ptr<foundation::storage::provider::IProvider> createProvider() const override {
        throw std::logic_error("never asked");
    }
    [[nodiscard]] StorageIRI getRootIri() const override { return StorageIRI(u"own://"); }
};

class PlainEntryPointTest : public RecordedJvmTest {
protected:
    void SetUp() override {
        RecordedJvmTest::SetUp();
        script::reset(env());
        handle = std::make_shared<FakeJVM>(jvm());
    }
    void TearDown() override {
        result.reset();
        script::reset(env());
        RecordedJvmTest::TearDown();
    }

    const LoadedLibrary library;
    std::shared_ptr<FakeJVM> handle;
    std::shared_ptr<PhysicalProviderFactory> result;
};

TEST_F(PlainEntryPointTest, FactoryServesWholeLives) {
    library.build()(handle, Scripted, result);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(result->getRootIri(), StorageIRI(u"java://"));
    const auto provider = result->createProvider();
    provider->createFile(StorageIRI(u"java://test/a"));
    EXPECT_THAT(script::calls(env()), ElementsAre("createFile java://test/a"));
}

TEST_F(PlainEntryPointTest, ErrorsOfItsProvidersAreCaughtByType) {
    library.build()(handle, Scripted, result);
    const auto provider = result->createProvider();
    script::failNext(env(), "createFile", "IN_USE", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { provider->createFile(StorageIRI(u"java://test/a")); }));
    script::failNext(env(), "createFile", "runtime", "a bug");
    EXPECT_TRUE(throwsExactly<InternalError>([&] { provider->createFile(StorageIRI(u"java://test/a")); }));
}

TEST_F(PlainEntryPointTest, CallsNeitherJavaNorTheMachine) {
    LogCapture log(AllSeverities);
    library.build()(handle, Scripted, result);
    EXPECT_THAT(recorder.calls({.allThreads = true}), IsEmpty());
    EXPECT_EQ(handle->lookups(), 0U);
    EXPECT_THAT(log.texts(Severity::Caught), IsEmpty());
}

TEST_F(PlainEntryPointTest, TakesItsShareOfTheMachineAndNoMore) {
    library.build()(handle, Scripted, result);
    EXPECT_EQ(handle.use_count(), 2);
    result.reset();
    EXPECT_EQ(handle.use_count(), 1);
}

TEST_F(PlainEntryPointTest, FactoryReplacesWhatTheResultHeld) {
    const auto own = std::make_shared<OwnFactory>();
    result = own;
    library.build()(handle, Scripted, result);
    EXPECT_NE(result, own);
    EXPECT_EQ(own.use_count(), 1) << "the former content is released";
}

TEST_F(PlainEntryPointTest, EmptyHandleStillGivesAFactory) {
    library.build()(nullptr, Scripted, result);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(internalErrorOf([&] { static_cast<void>(result->createProvider()); }), "JVM remvoed");
}

TEST_F(PlainEntryPointTest, MissingClassShowsInTheFactorysOwnCall) {
    library.build()(handle, "com/corvallen/storage/test/Nowhere", result);
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(internalErrorOf([&] { static_cast<void>(result->createProvider()); }),
              "Failed to find Java Provider implementation class java.lang.NoClassDefFoundError: "
              "com/corvallen/storage/test/Nowhere");
}

TEST_F(PlainEntryPointTest, NameIsCopied) {
    std::string name = Scripted;
    library.build()(handle, name.c_str(), result);
    name.assign(name.size(), 'x');
    EXPECT_NE(result->createProvider(), nullptr);
}

TEST_F(PlainEntryPointTest, NullNameIsLoggedAndTheResultUnchanged) {
    const auto own = std::make_shared<OwnFactory>();
    result = own;
    LogCapture log(AllSeverities);
    EXPECT_NO_THROW(library.build()(handle, nullptr, result));
    ASSERT_EQ(log.records().size(), 1U);
    EXPECT_EQ(log.records().front().severity, Severity::Caught);
    EXPECT_THAT(log.records().front().text,
                AllOf(StartsWith("Exception caught: "), HasSubstr("std::logic_error"), HasSubstr("null")))
        << "type and text of the exception";
    EXPECT_EQ(result, own);
    EXPECT_EQ(handle.use_count(), 1);
}

TEST_F(PlainEntryPointTest, FailureIsSilentWhileTheChannelIsOff) {
    LogCapture log(AllSeverities & ~static_cast<std::uint32_t>(Severity::Caught));
    EXPECT_NO_THROW(library.build()(handle, nullptr, result));
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_EQ(result, nullptr);
}

TEST(LoadedLibraryTest, CanBeUnloadedAndLoadedAgain) {
    for (int round = 0; round < 2; ++round) {
        {
            const LoadedLibrary library;
            EXPECT_TRUE(LoadedLibrary::isLoaded());
        }
        EXPECT_FALSE(LoadedLibrary::isLoaded());
    }
}

}  // namespace
}  // namespace storage::javaprovider::test
