#include "DefaultsTest.h"

namespace foundation::test {
namespace {

class TruncateToSizeTest : public DefaultsTest {
protected:
    void SetUp() override {
        DefaultsTest::SetUp();
        write(m_target, "0123456789");
    }

    void expectOnlyTarget(std::string_view bytes) const {
        EXPECT_EQ(bytesOf(m_target), bytes);
        EXPECT_EQ(names(), std::vector<std::u16string>{u"target"});
    }
};

TEST_F(TruncateToSizeTest, FileIsCutToEverySize) {
    for (std::size_t size = 10; size-- > 0;) {
        m_provider.truncateToSize(m_target, size);
        expectOnlyTarget(std::string_view("0123456789").substr(0, size));
    }
}

TEST_F(TruncateToSizeTest, FileIsCutThroughShortReadsAndWrites) {
    m_provider.habits().mostAtOnce = 3;
    m_provider.truncateToSize(m_target, 7);
    expectOnlyTarget("0123456");
}

TEST_F(TruncateToSizeTest, LargerSizeAddsZeros) {
    m_provider.habits().mostAtOnce = 3;
    m_provider.truncateToSize(m_target, 14);
    expectOnlyTarget(std::string_view("0123456789\0\0\0\0", 14));
}

TEST_F(TruncateToSizeTest, MoreZerosThanABufferHoldsAreAdded) {
    m_provider.truncateToSize(m_target, 700'001);
    expectOnlyTarget("0123456789" + std::string(699'991, '\0'));
}

TEST_F(TruncateToSizeTest, FileOfThatSizeIsLeftAlone) {
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    m_provider.truncateToSize(m_target, 10);
    EXPECT_EQ(m_provider.plan().operations(), std::vector<std::string>{"getFileAttributes"});
    expectOnlyTarget("0123456789");
}

TEST_F(TruncateToSizeTest, AttributesOfTheFileStay) {
    m_provider.setExtendedAttributes(m_target, storage::provider::ExtendedAttributes({{"colour", 1}}));
    m_provider.truncateToSize(m_target, 3);
    EXPECT_EQ(m_provider.getExtendedAttributes(m_target).all().size(), 1U);
}

TEST_F(TruncateToSizeTest, MissingFileIsReported) {
    expectError(ErrorCode::NotFound, m_source, [this] { m_provider.truncateToSize(m_source, 0); });
    expectOnlyTarget("0123456789");
}

TEST_F(TruncateToSizeTest, FolderIsNotAFile) {
    expectError(ErrorCode::NotAFile, m_folder, [this] { m_provider.truncateToSize(m_folder, 0); });
}

TEST_F(TruncateToSizeTest, FileThatMayNotBeWrittenIsKept) {
    m_provider.setReadOnly(m_target);
    expectError(ErrorCode::AccessDenied, m_target, [this] { m_provider.truncateToSize(m_target, 0); });
    expectOnlyTarget("0123456789");
}

TEST_F(TruncateToSizeTest, EveryFailureLeavesTheOldContentOrTheWholeNewOne) {
    for (const FaultPlan::Mode mode : AllModes) {
        const int failures =
            forEachFault(mode, {.prepare =
                                    [this](FaultyProvider& provider) {
                                        provider.createFolder(m_folder);
                                        write(provider, m_target, "0123456789");
                                        provider.habits().mostAtOnce = 4;
                                    },
                                .operation = [this](FaultyProvider& provider) { provider.truncateToSize(m_target, 7); },
                                .check =
                                    [&](FaultyProvider& provider, bool threw) {
                                        const std::string bytes = provider.bytesOf(m_target);
                                        const bool moved = mode == FaultPlan::Mode::AfterEffect;
                                        EXPECT_TRUE(bytes == "0123456" || (threw && bytes == "0123456789")) << bytes;
                                        EXPECT_TRUE(!threw || moved || bytes == "0123456789");
                                        if (mode != FaultPlan::Mode::Lasting) {
                                            EXPECT_EQ(namesIn(provider).size(), 1U);
                                        }
                                    }});
        EXPECT_GE(failures, 9);
    }
}

}  // namespace
}  // namespace foundation::test
