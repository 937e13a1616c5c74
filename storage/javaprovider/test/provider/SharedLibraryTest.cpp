// The shared library as a host links it: what it shows, and that errors cross its border by type.
#include <gmock/gmock.h>

#include <boost/exception/exception.hpp>

#include <array>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "foundation/core/except/AnonymousInternalException.h"
#include "provider/Script.h"
#include "storage/javaprovider/EntryPoints.h"
#include "support/FakeJVM.h"
#include "support/JavaHelpers.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {
namespace {

using foundation::core::except::IException;
using foundation::core::except::IInternalException;
using foundation::storage::provider::IProvider;
using foundation::storage::provider::StorageIRI;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

using ProviderError = foundation::storage::provider::Exception;
using BaseOfInternalErrors = foundation::core::except::Exception<IInternalException, std::runtime_error, void>;

const StorageIRI A(u"java://test/a");

/// What the command prints, a line each; the test fails when the command does.
std::vector<std::string> linesOf(const std::string& command) {
    std::vector<std::string> lines;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << "cannot run " << command;
        return lines;
    }
    std::array<char, 4096> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), pipe) != nullptr) {
        lines.emplace_back(line.data());
        lines.back().pop_back();
    }
    EXPECT_EQ(::pclose(pipe), 0) << command;
    return lines;
}

/// The names of the defined dynamic symbols, demangled, without address and type.
std::vector<std::string> visibleNames() {
    std::vector<std::string> names;
    for (const std::string& line : linesOf("nm -D -C --defined-only '" LIBRARY_FILE "'")) {
        std::istringstream in(line);
        std::string address;
        std::string type;
        std::string name;
        in >> address >> type;
        std::getline(in >> std::ws, name);
        names.push_back(name);
    }
    return names;
}

TEST(SharedLibraryTest, ShowsItsFiveFunctionsAndNothingElse) {
    const std::string jvm = "std::shared_ptr<jvm_interface::JVM>";
    const std::string text = "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> > const&";
    EXPECT_THAT(visibleNames(),
                UnorderedElementsAre("storage::javaprovider::buildProvider(" + jvm + ", " + text + ")",
                                     "storage::javaprovider::buildProvider(" + jvm + ", _jobject*)",
                                     "storage::javaprovider::buildPhysicalFactory(" + jvm + ", " + text + ")",
                                     "storage::javaprovider::buildPhysicalFactory(" + jvm + ", _jobject*)",
                                     "buildPhysicalFactory_V1"));
}

TEST(SharedLibraryTest, NeedsNoVirtualMachineToBeLoaded) {
    EXPECT_THAT(linesOf("readelf -d '" LIBRARY_FILE "'"), Each(Not(HasSubstr("libjvm"))));
}

TEST(SharedLibraryTest, AsksForNoEnvironmentVariableAndNoFile) {
#ifdef COUNTS_COVERAGE
    GTEST_SKIP() << "what counts the executed lines asks for both";
#endif
    const auto asked = linesOf("nm -D --undefined-only '" LIBRARY_FILE "'");
    EXPECT_FALSE(asked.empty());
    for (const char* name :
         {" getenv", "secure_getenv", " environ", " fopen", " open", " openat", "basic_filebuf", "ifstream"}) {
        EXPECT_THAT(asked, Each(Not(HasSubstr(name)))) << name;
    }
}

class BorderTest : public JvmTest {
protected:
    void SetUp() override {
        JvmTest::SetUp();
        script::reset(env());
        handle = std::make_shared<FakeJVM>(jvm());
        provider.reset(buildProvider(handle, "com/corvallen/storage/test/ScriptedProvider"));
    }

    void TearDown() override {
        handle->restore();
        provider.reset();
        EXPECT_EQ(handle.use_count(), 1);
        script::reset(env());
        JvmTest::TearDown();
    }

    std::shared_ptr<FakeJVM> handle;
    std::unique_ptr<IProvider> provider;
};

TEST_F(BorderTest, OperationsReachJavaAndAnswersComeBack) {
    script::answer(env(), "fileExists", true);
    EXPECT_TRUE(provider->fileExists(A));
    EXPECT_FALSE(provider->folderExists(A));
    EXPECT_THAT(script::calls(env()), ::testing::ElementsAre("fileExists java://test/a", "folderExists java://test/a"));
}

TEST_F(BorderTest, BackEndErrorIsCaughtByEachOfItsTypes) {
    script::failAlways(env(), "createFile", "NOT_FOUND", "java://test/a");
    EXPECT_THROW(provider->createFile(A), ProviderError);
    EXPECT_THROW(provider->createFile(A), IException);
    EXPECT_THROW(provider->createFile(A), std::runtime_error);
    EXPECT_THROW(provider->createFile(A), std::exception);
    EXPECT_THROW(provider->createFile(A), boost::exception);
}

TEST_F(BorderTest, BackEndErrorIsNoInternalError) {
    script::failNext(env(), "createFile", "NOT_FOUND", "java://test/a");
    try {
        provider->createFile(A);
        FAIL() << "nothing was thrown";
    } catch (const IInternalException&) {
        FAIL() << "caught as an internal error";
    } catch (const ProviderError& error) {
        EXPECT_EQ(error.code(), foundation::storage::provider::ErrorCode::NotFound);
        EXPECT_EQ(error.location(), A);
    }
}

TEST_F(BorderTest, UnexpectedErrorIsCaughtByEachOfItsTypes) {
    script::failAlways(env(), "createFile", "runtime", "a bug");
    EXPECT_THROW(provider->createFile(A), BaseOfInternalErrors);
    EXPECT_THROW(provider->createFile(A), IInternalException);
    EXPECT_THROW(provider->createFile(A), IException);
    EXPECT_THROW(provider->createFile(A), std::runtime_error);
    EXPECT_THROW(provider->createFile(A), std::exception);
    EXPECT_THROW(provider->createFile(A), boost::exception);
}

TEST_F(BorderTest, RemovedMachineIsCaughtByEachOfItsTypes) {
    handle->remove();
    EXPECT_THROW(provider->createFile(A), BaseOfInternalErrors);
    EXPECT_THROW(provider->createFile(A), IInternalException);
    EXPECT_THROW(provider->createFile(A), IException);
    EXPECT_THROW(provider->createFile(A), std::runtime_error);
    EXPECT_THROW(provider->createFile(A), std::exception);
}

TEST_F(BorderTest, FailureToMakeAProviderIsCaughtByEachOfItsTypes) {
    const auto factory = buildPhysicalFactory(handle, "no/such/Class");
    EXPECT_THROW(static_cast<void>(factory->createProvider()), IInternalException);
    EXPECT_THROW(static_cast<void>(factory->createProvider()), std::runtime_error);
    EXPECT_THROW(static_cast<void>(buildProvider(handle, "no/such/Class")), IInternalException);
    EXPECT_THROW(static_cast<void>(buildProvider(handle, "no/such/Class")), std::runtime_error);
}

TEST_F(BorderTest, EveryEntryPointServesAHost) {
    jobject instance = newObject(env(), "com/corvallen/storage/test/ScriptedProvider");
    const std::unique_ptr<IProvider> overInstance(buildProvider(handle, instance));
    const auto byName = buildPhysicalFactory(handle, "com/corvallen/storage/test/ScriptedProvider")->createProvider();
    const auto byInstance = buildPhysicalFactory(handle, instance)->createProvider();
    std::shared_ptr<foundation::storage::provider::PhysicalProviderFactory> plain;
    buildPhysicalFactory_V1(handle, "com/corvallen/storage/test/ScriptedProvider", plain);
    ASSERT_NE(plain, nullptr);
    const auto byPlainName = plain->createProvider();
    for (const IProvider* made : {overInstance.get(), byName.get(), byInstance.get(), byPlainName.get()}) {
        EXPECT_NO_THROW(made->createFile(A));
    }
    EXPECT_EQ(script::calls(env()).size(), 4U);
}

}  // namespace
}  // namespace storage::javaprovider::test
