// What is particular to single operations: answers of the existence tests, flags of the moves.
#include <gmock/gmock.h>

#include <memory>
#include <string>

#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ErrorCode;
using ::testing::ElementsAre;

class FileOperationDetailTest : public ProviderTest {
protected:
    void SetUp() override {
        ProviderTest::SetUp();
        provider = makeProvider();
        recorder.clear();
    }

    const StorageIRI a{u"java://test/a"};
    const StorageIRI b{u"java://test/b"};
    std::unique_ptr<IProvider> provider;
};

// ---- existence tests ----

TEST_F(FileOperationDetailTest, FileExistsGivesJavasAnswer) {
    script::answer(env(), "fileExists", true);
    EXPECT_TRUE(provider->fileExists(a));
    script::answer(env(), "fileExists", false);
    EXPECT_FALSE(provider->fileExists(a));
}

TEST_F(FileOperationDetailTest, FolderExistsGivesJavasAnswer) {
    script::answer(env(), "folderExists", true);
    EXPECT_TRUE(provider->folderExists(a));
    script::answer(env(), "folderExists", false);
    EXPECT_FALSE(provider->folderExists(a));
}

TEST_F(FileOperationDetailTest, ExistenceTestsAskTheirOwnMethod) {
    script::answer(env(), "fileExists", true);
    EXPECT_FALSE(provider->folderExists(a));
    script::reset(env());
    script::answer(env(), "folderExists", true);
    EXPECT_FALSE(provider->fileExists(a));
}

TEST_F(FileOperationDetailTest, ExceptionWinsOverTheAnswer) {
    script::answer(env(), "fileExists", true);
    script::failNext(env(), "fileExists", "UNAVAILABLE", "java://test/a");
    const auto error = thrownBy<ProviderError>([&] { static_cast<void>(provider->fileExists(a)); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::Unavailable);
    script::failNext(env(), "folderExists", "NOT_FOUND", "java://test/a");
    EXPECT_TRUE(throwsExactly<ProviderError>([&] { static_cast<void>(provider->folderExists(a)); }))
        << "also NotFound is an error and no false";
}

// ---- recursive removal ----

TEST_F(FileOperationDetailTest, RecursiveRemovalNeverAsksForTheFeature) {
    provider->removeFolderRecursive(a);
    EXPECT_THAT(javaCalls(), ElementsAre("removeFolderRecursively java://test/a"));
    EXPECT_EQ(recorder.count("GetStaticFieldID"), 0U);
}

TEST_F(FileOperationDetailTest, RecursiveRemovalThatIsUnsupportedSaysSo) {
    script::failNext(env(), "removeFolderRecursively", "NOT_SUPPORTED", "java://test/a");
    const auto error = thrownBy<ProviderError>([&] { provider->removeFolderRecursive(a); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::NotSupported);
    EXPECT_THAT(javaCalls(), ElementsAre("removeFolderRecursively java://test/a"));
}

// ---- moves ----

struct MoveFlag {
    int policy;
    bool fileFlag;
    bool folderFlag;
};

class MoveFlagTest : public FileOperationDetailTest, public ::testing::WithParamInterface<MoveFlag> {
protected:
    [[nodiscard]] static ReplacementPolicy policy() { return static_cast<ReplacementPolicy>(GetParam().policy); }
    [[nodiscard]] static std::string line(const char* method, bool flag) {
        return std::string(method) + " java://test/a java://test/b " + (flag ? "true" : "false");
    }
};

TEST_P(MoveFlagTest, FileMoveReplacesForPoliciesOneAndTwo) {
    provider->moveFile(a, b, policy());
    EXPECT_EQ(recorder.record("CallVoidMethod moveFile").booleanArgument(2), GetParam().fileFlag);
    EXPECT_THAT(javaCalls(), ElementsAre(line("moveFile", GetParam().fileFlag)));
}

TEST_P(MoveFlagTest, FolderMoveReplacesForPolicyOneAlone) {
    provider->moveFolder(a, b, policy());
    EXPECT_EQ(recorder.record("CallVoidMethod moveFolder").booleanArgument(2), GetParam().folderFlag);
    EXPECT_THAT(javaCalls(), ElementsAre(line("moveFolder", GetParam().folderFlag)));
}

INSTANTIATE_TEST_SUITE_P(Policies, MoveFlagTest,
                         ::testing::Values(MoveFlag{0, false, false}, MoveFlag{1, true, true}, MoveFlag{2, true, false},
                                           MoveFlag{3, false, false}, MoveFlag{-1, false, false}),
                         [](const auto& tested) {
                             return tested.param.policy < 0 ? "Minus" + std::to_string(-tested.param.policy)
                                                            : "Policy" + std::to_string(tested.param.policy);
                         });

TEST_F(FileOperationDetailTest, MoveOntoItselfMakesTwoUrisOfOneLocation) {
    provider->moveFile(a, a);
    const auto made = recorder.records({.only = "NewObject"});
    ASSERT_EQ(made.size(), 2U);
    EXPECT_NE(made[0].resultReference, made[1].resultReference);
    EXPECT_THAT(javaCalls(), ElementsAre("moveFile java://test/a java://test/a false"));
}

}  // namespace
}  // namespace storage::javaprovider::test
