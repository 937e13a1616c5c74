#include <algorithm>
#include <utility>

#include "DefaultsTest.h"

namespace foundation::test {
namespace {

/// What only the plain copy does.
class PlainCopyTest : public DefaultsTest {
protected:
    void SetUp() override {
        DefaultsTest::SetUp();
        write(m_source, "new content");
    }
};

TEST_F(PlainCopyTest, FileThatMayNotBeWrittenIsKept) {
    write(m_target, "old");
    m_provider.setReadOnly(m_target);
    expectError(ErrorCode::AccessDenied, m_target,
                [this] { m_provider.copyFile(m_source, m_target, Policy::ReplaceExisting); });
    EXPECT_EQ(bytesOf(m_target), "old");
}

TEST_F(PlainCopyTest, FileThatIsOpenElsewhereIsKept) {
    write(m_target, "old");
    const auto elsewhere = m_provider.openReadOnlyByteStream(m_target);
    expectError(ErrorCode::InUse, m_target,
                [this] { m_provider.copyFile(m_source, m_target, Policy::ReplaceExisting); });
    EXPECT_EQ(bytesOf(m_target), "old");
    elsewhere->close();
}

TEST_F(PlainCopyTest, FileIsReplacedInPlace) {
    write(m_target, "old");
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    m_provider.copyFile(m_source, m_target, Policy::ReplaceExistingFile);
    EXPECT_THAT(m_provider.plan().operations(),
                testing::Not(testing::AnyOf(testing::Contains("createFile"), testing::Contains("moveFile"))));
    EXPECT_EQ(bytesOf(m_target), "new content");
}

TEST_F(PlainCopyTest, FileThatVanishesMeanwhileIsMadeAnew) {
    write(m_target, "old");
    m_provider.setHook([this, done = false](std::string_view operation, const StorageIRI& at) mutable {
        if (operation == "openByteStream" && at == m_target && !std::exchange(done, true)) {
            m_provider.removeFile(m_target);
        }
    });
    m_provider.copyFile(m_source, m_target, Policy::ReplaceExisting);
    EXPECT_EQ(bytesOf(m_target), "new content");
    EXPECT_EQ(names(), (std::vector<std::u16string>{u"source", u"target"}));
}

TEST_F(PlainCopyTest, ErrorOfTheCloseIsReportedAndNothingIsThere) {
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    m_provider.copyFile(m_source, m_target);
    const std::vector<std::string> operations = m_provider.plan().operations();
    const auto close = std::find(operations.begin(), operations.end(), "close") - operations.begin();
    m_provider.removeFile(m_target);
    m_provider.plan().failAt(static_cast<int>(close) + 1, FaultPlan::Mode::Once);
    expectError(ErrorCode::Unavailable, m_target, [this] { m_provider.copyFile(m_source, m_target); });
    EXPECT_EQ(names(), std::vector<std::u16string>{u"source"});
}

TEST_F(PlainCopyTest, BackEndThatCannotMoveFilesIsWrittenToInPlace) {
    m_provider.setHook([](std::string_view operation, const StorageIRI& at) {
        if (operation == "moveFile") {
            throw Exception(ErrorCode::NotSupported, at);
        }
    });
    m_provider.copyFile(m_source, m_target);
    EXPECT_EQ(bytesOf(m_target), "new content");
    EXPECT_EQ(names(), (std::vector<std::u16string>{u"source", u"target"}));
    expectError(ErrorCode::AlreadyExists, m_target, [this] { m_provider.copyFile(m_source, m_target); });
}

TEST_F(PlainCopyTest, BackEndThatCannotMoveFilesKeepsWhatAppearsMeanwhile) {
    m_provider.setHook([this](std::string_view operation, const StorageIRI& at) {
        if (operation == "moveFile") {
            write(m_target, "from elsewhere");
            throw Exception(ErrorCode::NotSupported, at);
        }
    });
    expectError(ErrorCode::AlreadyExists, m_target, [this] { m_provider.copyFile(m_source, m_target); });
    EXPECT_EQ(bytesOf(m_target), "from elsewhere");
}

TEST_F(PlainCopyTest, FailedReplacementLeavesThePresentFileInPlace) {
    for (const FaultPlan::Mode mode : AllModes) {
        const int failures =
            forEachFault(mode, {.prepare =
                                    [this](FaultyProvider& provider) {
                                        provider.createFolder(m_folder);
                                        write(provider, m_source, "new content");
                                        write(provider, m_target, "old");
                                        provider.habits().mostAtOnce = 4;
                                    },
                                .operation =
                                    [this](FaultyProvider& provider) {
                                        provider.copyFile(m_source, m_target, Policy::ReplaceExistingFile);
                                    },
                                .check =
                                    [this](FaultyProvider& provider, bool threw) {
                                        const std::string bytes = provider.bytesOf(m_target);
                                        const bool part = std::string("new content").starts_with(bytes);
                                        EXPECT_TRUE(threw ? bytes == "old" || part : bytes == "new content") << bytes;
                                        EXPECT_EQ(namesIn(provider).size(), 2U);
                                    }});
        EXPECT_GE(failures, 11);
    }
}

}  // namespace
}  // namespace foundation::test
