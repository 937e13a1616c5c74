#include <algorithm>

#include "DefaultsTest.h"

namespace foundation::test {
namespace {

class CopyFileAtomicTest : public DefaultsTest {
protected:
    void SetUp() override {
        DefaultsTest::SetUp();
        write(m_source, "new content");
        write(m_target, "old");
    }
};

TEST_F(CopyFileAtomicTest, EveryFailureLeavesTheOldContentOrTheWholeNewOne) {
    for (const FaultPlan::Mode mode : AllModes) {
        for (const std::streamsize mostAtOnce : {1, 4, 100}) {
            const int failures =
                forEachFault(mode, {.prepare =
                                        [&](FaultyProvider& provider) {
                                            provider.createFolder(m_folder);
                                            write(provider, m_source, "new content");
                                            write(provider, m_target, "old");
                                            provider.habits().mostAtOnce = mostAtOnce;
                                        },
                                    .operation =
                                        [this](FaultyProvider& provider) {
                                            provider.copyFileAtomic(m_source, m_target, Policy::ReplaceExistingFile);
                                        },
                                    .check =
                                        [&](FaultyProvider& provider, bool threw) {
                                            const std::string bytes = provider.bytesOf(m_target);
                                            const bool moved = mode == FaultPlan::Mode::AfterEffect;
                                            EXPECT_TRUE(bytes == "new content" || (threw && bytes == "old")) << bytes;
                                            EXPECT_TRUE(!threw || moved || bytes == "old");
                                            if (mode != FaultPlan::Mode::Lasting) {
                                                EXPECT_EQ(namesIn(provider).size(), 2U);
                                            }
                                        }});
            EXPECT_GE(failures, 9);
        }
    }
}

TEST_F(CopyFileAtomicTest, ReadersSeeTheOldContentUntilTheMove) {
    std::string seen;
    m_provider.setHook([&](std::string_view operation, const StorageIRI&) {
        if (operation == "moveFile") {
            seen = bytesOf(m_target);
        }
    });
    m_provider.copyFileAtomic(m_source, m_target, Policy::ReplaceExisting);
    EXPECT_EQ(seen, "old");
    EXPECT_EQ(bytesOf(m_target), "new content");
}

TEST_F(CopyFileAtomicTest, KeptFileCostsNoCopy) {
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    expectError(ErrorCode::AlreadyExists, m_target, [this] { m_provider.copyFileAtomic(m_source, m_target); });
    EXPECT_THAT(m_provider.plan().operations(), testing::Not(testing::Contains("createFile")));
}

TEST_F(CopyFileAtomicTest, KeptFolderCostsNoCopy) {
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    expectError(ErrorCode::AlreadyExists, m_folder,
                [this] { m_provider.copyFileAtomic(m_source, m_folder, Policy::ReplaceExistingFile); });
    EXPECT_THAT(m_provider.plan().operations(), testing::Not(testing::Contains("createFile")));
}

TEST_F(CopyFileAtomicTest, FileThatMayNotBeWrittenIsKeptAndCostsNoCopy) {
    m_provider.setReadOnly(m_target);
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    expectError(ErrorCode::AccessDenied, m_target,
                [this] { m_provider.copyFileAtomic(m_source, m_target, Policy::ReplaceExisting); });
    EXPECT_EQ(bytesOf(m_target), "old");
    EXPECT_THAT(m_provider.plan().operations(), testing::Not(testing::Contains("createFile")));
}

TEST_F(CopyFileAtomicTest, ErrorsOfTheTemporaryFileNameTheDestination) {
    // Everything from the creation of the temporary file on, but for the reads and closes of the source.
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    m_provider.copyFileAtomic(m_source, m_target, Policy::ReplaceExisting);
    const std::vector<std::string> operations = m_provider.plan().operations();
    for (std::size_t at = 0; at < operations.size(); ++at) {
        const std::string& operation = operations[at];
        if (operation == "createFile" || operation == "openByteStream" || operation == "write" ||
            operation == "moveFile") {
            m_provider.plan().failAt(static_cast<int>(at) + 1, FaultPlan::Mode::Once);
            expectError(ErrorCode::Unavailable, m_target,
                        [this] { m_provider.copyFileAtomic(m_source, m_target, Policy::ReplaceExisting); });
        }
    }
    EXPECT_THAT(operations, testing::IsSupersetOf({"createFile", "openByteStream", "write", "moveFile"}));
}

TEST_F(CopyFileAtomicTest, ErrorsOfTheSourceNameTheSource) {
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    m_provider.copyFileAtomic(m_source, m_target, Policy::ReplaceExisting);
    const std::vector<std::string> operations = m_provider.plan().operations();
    const auto read = std::find(operations.begin(), operations.end(), "read") - operations.begin();
    m_provider.plan().failAt(static_cast<int>(read) + 1, FaultPlan::Mode::Once);
    expectError(ErrorCode::Unavailable, m_source,
                [this] { m_provider.copyFileAtomic(m_source, m_target, Policy::ReplaceExisting); });
}

}  // namespace
}  // namespace foundation::test
