#include "DefaultsTest.h"

namespace foundation::test {
namespace {

using storage::provider::ByteStream;
using storage::provider::TransactionalStream;

/// Transactions with a scratch file of either kind; the parameter says whether the caller chose its location.
class TransactionalStreamTest : public DefaultsTest, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        DefaultsTest::SetUp();
        write(m_target, "old content");
    }

    std::unique_ptr<TransactionalStream> open(const storage::provider::IProvider& provider,
                                              const StorageIRI& location) const {
        return GetParam() ? provider.openTransactionalStreamAtScratchLocation(location, m_scratch)
                          : provider.openTransactionalStream(location);
    }
    std::unique_ptr<TransactionalStream> open(const StorageIRI& location) const { return open(m_provider, location); }
    std::unique_ptr<TransactionalStream> open() const { return open(m_target); }

    static void put(ByteStream& stream, std::string_view bytes) {
        while (!bytes.empty()) {
            bytes.remove_prefix(
                static_cast<std::size_t>(stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()))));
        }
    }

    static std::string get(ByteStream& stream) {
        std::string bytes;
        char byte = 0;
        while (stream.read(&byte, 1) == 1) {
            bytes.push_back(byte);
        }
        return bytes;
    }

    /// What errors about the scratch file name.
    [[nodiscard]] const StorageIRI& named() const { return GetParam() ? m_scratch : m_target; }

    void expectOnlyTarget(std::string_view bytes) const {
        EXPECT_EQ(bytesOf(m_target), bytes);
        EXPECT_EQ(names(), std::vector<std::u16string>{u"target"});
    }

    void expectRefused(const std::function<void()>& action) const {
        expectError(ErrorCode::Unavailable, m_target, action);
    }

    /// The transaction is over: it takes and gives no bytes, and does not commit again.
    void expectEnded(TransactionalStream& stream) const {
        char byte = 0;
        expectRefused([&] { (void)stream.read(&byte, 1); });
        expectRefused([&] { (void)stream.write(&byte, 1); });
        expectRefused([&] { (void)stream.seek(0, std::ios_base::beg); });
        expectRefused([&] { stream.commit(); });
    }

    const StorageIRI m_scratch{u"java://mount/folder/scratch"};
};

INSTANTIATE_TEST_SUITE_P(Kinds, TransactionalStreamTest, testing::Bool(),
                         [](const auto& test) { return std::string(test.param ? "AtScratchLocation" : "Beside"); });

TEST_P(TransactionalStreamTest, StartsWithThePresentContentAtItsBeginning) {
    const auto stream = open();
    EXPECT_EQ(stream->seek(0, std::ios_base::cur), std::streampos(0));
    EXPECT_EQ(get(*stream), "old content");
    stream->rollback();
}

TEST_P(TransactionalStreamTest, WritesShowOnCommitAlone) {
    const auto stream = open();
    put(*stream, "new");
    EXPECT_EQ(bytesOf(m_target), "old content");
    stream->commit();
    expectOnlyTarget("new content");
}

TEST_P(TransactionalStreamTest, SeekMovesInTheUncommittedContent) {
    const auto stream = open();
    EXPECT_EQ(stream->seek(-7, std::ios_base::end), std::streampos(4));
    put(*stream, "CONTENT!");
    stream->commit();
    expectOnlyTarget("old CONTENT!");
}

TEST_P(TransactionalStreamTest, RollbackKeepsTheOldContent) {
    const auto stream = open();
    put(*stream, "new");
    stream->rollback();
    expectOnlyTarget("old content");
}

TEST_P(TransactionalStreamTest, DestructionKeepsTheOldContent) {
    put(*open(), "new");
    expectOnlyTarget("old content");
}

TEST_P(TransactionalStreamTest, MissingFileStartsEmptyAndIsThereAfterTheCommit) {
    m_provider.removeFile(m_target);
    const auto stream = open();
    EXPECT_EQ(get(*stream), "");
    put(*stream, "new");
    EXPECT_FALSE(m_provider.exists(m_target));
    stream->commit();
    expectOnlyTarget("new");
}

TEST_P(TransactionalStreamTest, MissingFileStaysMissingWithoutACommit) {
    m_provider.removeFile(m_target);
    put(*open(), "new");
    EXPECT_TRUE(names().empty());
}

TEST_P(TransactionalStreamTest, CommitMayFollowClose) {
    const auto stream = open();
    put(*stream, "new");
    stream->close();
    stream->close();
    expectRefused([&] { put(*stream, "x"); });
    EXPECT_EQ(bytesOf(m_target), "old content");
    stream->commit();
    expectOnlyTarget("new content");
}

TEST_P(TransactionalStreamTest, DestructionAfterCloseKeepsTheOldContent) {
    {
        const auto stream = open();
        put(*stream, "new");
        stream->close();
    }
    expectOnlyTarget("old content");
}

TEST_P(TransactionalStreamTest, NothingWorksAfterTheCommit) {
    const auto stream = open();
    stream->commit();
    expectEnded(*stream);
    expectRefused([&] { stream->rollback(); });
    EXPECT_NO_THROW(stream->close());
    expectOnlyTarget("old content");
}

TEST_P(TransactionalStreamTest, NothingWorksAfterTheRollback) {
    const auto stream = open();
    stream->rollback();
    expectEnded(*stream);
    EXPECT_NO_THROW(stream->rollback());
    EXPECT_NO_THROW(stream->close());
    expectOnlyTarget("old content");
}

TEST_P(TransactionalStreamTest, FolderIsNotAFile) {
    expectError(ErrorCode::NotAFile, m_folder, [this] { (void)open(m_folder); });
    expectOnlyTarget("old content");
}

TEST_P(TransactionalStreamTest, FileThatMayNotBeWrittenIsRefused) {
    m_provider.setReadOnly(m_target);
    expectError(ErrorCode::AccessDenied, m_target, [this] { (void)open(); });
    expectOnlyTarget("old content");
}

TEST_P(TransactionalStreamTest, FolderThatAppearsMeanwhileIsKept) {
    const auto stream = open();
    m_provider.removeFile(m_target);
    m_provider.createFolder(m_target);
    expectError(ErrorCode::AlreadyExists, m_target, [&] { stream->commit(); });
    EXPECT_TRUE(m_provider.folderExists(m_target));
}

TEST_P(TransactionalStreamTest, CommitThatCouldNotReplaceMayBeTriedAgain) {
    const auto stream = open();
    put(*stream, "new");
    stream->close();
    m_provider.plan().failAt(1, FaultPlan::Mode::Once);
    expectError(ErrorCode::Unavailable, named(), [&] { stream->commit(); });
    EXPECT_EQ(bytesOf(m_target), "old content");
    stream->commit();
    expectOnlyTarget("new content");
}

TEST_P(TransactionalStreamTest, FailedCloseGivesTheTransactionUp) {
    const auto stream = open();
    put(*stream, "new");
    m_provider.plan().failAt(1, FaultPlan::Mode::Once);
    expectError(ErrorCode::Unavailable, named(), [&] { stream->close(); });
    expectRefused([&] { stream->commit(); });
    EXPECT_NO_THROW(stream->rollback());
    expectOnlyTarget("old content");
}

TEST_P(TransactionalStreamTest, CommitReportsWhatCouldNotBeWrittenAndPutsNothingInPlace) {
    const auto stream = open();
    put(*stream, "new");
    m_provider.plan().failAt(1, FaultPlan::Mode::Once);
    expectError(ErrorCode::Unavailable, named(), [&] { stream->commit(); });
    EXPECT_EQ(m_provider.plan().operations(), std::vector<std::string>{"close"});
    expectRefused([&] { stream->commit(); });
    EXPECT_EQ(bytesOf(m_target), "old content");
}

TEST_P(TransactionalStreamTest, CommitClosesAndMovesAndNothingElse) {
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    auto stream = open();
    EXPECT_THAT(m_provider.plan().operations(), testing::Not(testing::Contains("removeFile")));
    m_provider.plan().failAt(0, FaultPlan::Mode::Once);
    stream->commit();
    stream.reset();
    EXPECT_EQ(m_provider.plan().operations(), (std::vector<std::string>{"close", "moveFile"}));
}

TEST_P(TransactionalStreamTest, AttributesOfTheFileStay) {
    m_provider.setExtendedAttributes(m_target, storage::provider::ExtendedAttributes({{"colour", 1}}));
    open()->commit();
    EXPECT_EQ(m_provider.getExtendedAttributes(m_target).all().size(), 1U);
}

TEST_P(TransactionalStreamTest, RollbackTellsWhatItCouldNotRemove) {
    const auto stream = open();
    m_provider.plan().failAt(2, FaultPlan::Mode::Once);
    expectError(ErrorCode::Unavailable, named(), [&] { stream->rollback(); });
    EXPECT_EQ(m_provider.plan().operations(), (std::vector<std::string>{"close", "removeFile"}));
    EXPECT_EQ(bytesOf(m_target), "old content");
}

TEST_P(TransactionalStreamTest, LastOfTwoTransactionsWins) {
    const auto first = m_provider.openTransactionalStream(m_target);
    const auto second = open();
    put(*first, "one");
    put(*second, "two");
    first->commit();
    EXPECT_EQ(bytesOf(m_target), "one content");
    second->commit();
    expectOnlyTarget("two content");
}

TEST_P(TransactionalStreamTest, ErrorsOfWritingNameWhatTheCallerKnows) {
    const auto stream = open();
    m_provider.plan().failAt(1, FaultPlan::Mode::Once);
    expectError(ErrorCode::Unavailable, named(), [&] { (void)stream->write("x", 1); });
    m_provider.plan().failAt(1, FaultPlan::Mode::Once);
    expectError(ErrorCode::Unavailable, named(), [&] { (void)stream->seek(0, std::ios_base::beg); });
    char byte = 0;
    m_provider.plan().failAt(1, FaultPlan::Mode::Once);
    expectError(ErrorCode::Unavailable, named(), [&] { (void)stream->read(&byte, 1); });
}

TEST_P(TransactionalStreamTest, EveryFailureLeavesTheOldContentOrTheWholeNewOne) {
    for (const FaultPlan::Mode mode : AllModes) {
        const int failures = forEachFault(
            mode, {.prepare =
                       [this](FaultyProvider& provider) {
                           provider.createFolder(m_folder);
                           write(provider, m_target, "old content");
                           provider.habits().mostAtOnce = 4;
                       },
                   .operation =
                       [this](FaultyProvider& provider) {
                           const auto stream = open(provider, m_target);
                           put(*stream, "NEW CONTENT!");
                           stream->commit();
                       },
                   .check =
                       [&](FaultyProvider& provider, bool threw) {
                           const std::string bytes = provider.bytesOf(m_target);
                           const bool moved = mode == FaultPlan::Mode::AfterEffect;
                           EXPECT_TRUE(bytes == "NEW CONTENT!" || (threw && bytes == "old content")) << bytes;
                           EXPECT_TRUE(!threw || moved || bytes == "old content");
                           if (mode != FaultPlan::Mode::Lasting) {
                               EXPECT_EQ(namesIn(provider).size(), 1U);
                           }
                       }});
        EXPECT_GE(failures, 16);
    }
}

}  // namespace
}  // namespace foundation::test
