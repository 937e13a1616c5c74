// Transactional streams and truncation.
#include "SharedTest.h"

namespace foundation::test {
namespace {

using storage::provider::ByteStream;
using storage::provider::ExtendedFeature;

class SharedTransactionTest : public SharedTest {
protected:
    void SetUp() override {
        SharedTest::SetUp();
        write(m_target = at(u"target"), "old content");
    }

    static void put(ByteStream& stream, std::string_view bytes) {
        ASSERT_EQ(stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size())),
                  static_cast<std::streamsize>(bytes.size()));
    }

    void expectOnlyTarget(std::string_view bytes) const {
        EXPECT_EQ(bytesOf(m_target), bytes);
        EXPECT_EQ(names(), Names{u"target"});
    }

    StorageIRI m_target;
};
SHARED_TESTS(SharedTransactionTest);

TEST_P(SharedTransactionTest, WritesShowOnCommitAlone) {
    const auto stream = provider().openTransactionalStream(m_target);
    put(*stream, "new");
    EXPECT_EQ(bytesOf(m_target), "old content");
    stream->commit();
    expectOnlyTarget("new content");
    expectError(ErrorCode::Unavailable, m_target, [&] { stream->commit(); });
}

TEST_P(SharedTransactionTest, StreamsAndAtomicCopiesWorkWithoutTheirFeature) {
    EXPECT_FALSE(provider().hasFeature(ExtendedFeature::TransactionalStreams));
    EXPECT_FALSE(provider().hasFeature(ExtendedFeature::AtomicCopy));
    const auto stream = provider().openTransactionalStream(m_target);
    put(*stream, "new");
    stream->commit();
    provider().copyFileAtomic(m_target, at(u"copy"));
    EXPECT_EQ(bytesOf(at(u"copy")), "new content");
}

TEST_P(SharedTransactionTest, RollbackAndDestructionKeepTheOldContent) {
    auto stream = provider().openTransactionalStream(m_target);
    put(*stream, "new");
    stream->rollback();
    expectOnlyTarget("old content");
    stream = provider().openTransactionalStream(m_target);
    put(*stream, "new");
    stream.reset();
    expectOnlyTarget("old content");
}

TEST_P(SharedTransactionTest, MissingFileIsThereAfterTheCommit) {
    provider().removeFile(m_target);
    const auto stream = provider().openTransactionalStream(m_target);
    put(*stream, "new");
    EXPECT_FALSE(provider().exists(m_target));
    stream->commit();
    expectOnlyTarget("new");
}

TEST_P(SharedTransactionTest, ScratchLocationHoldsTheUncommittedBytes) {
    const StorageIRI scratch = at(u"scratch");
    const auto stream = provider().openTransactionalStreamAtScratchLocation(m_target, scratch);
    EXPECT_TRUE(provider().fileExists(scratch));
    EXPECT_EQ(stream->seek(0, std::ios_base::end), std::streampos(11));
    put(*stream, "!");
    stream->commit();
    expectOnlyTarget("old content!");
}

TEST_P(SharedTransactionTest, TakenScratchLocationIsKept) {
    write(at(u"scratch"), "somebody's");
    expectError(ErrorCode::AlreadyExists, at(u"scratch"),
                [&] { (void)provider().openTransactionalStreamAtScratchLocation(m_target, at(u"scratch")); });
    EXPECT_EQ(bytesOf(at(u"scratch")), "somebody's");
}

TEST_P(SharedTransactionTest, FolderIsNotAFile) {
    expectError(ErrorCode::NotAFile, folder(), [&] { (void)provider().openTransactionalStream(folder()); });
    expectError(ErrorCode::NotAFile, folder(), [&] { provider().truncateToSize(folder(), 1); });
    expectOnlyTarget("old content");
}

TEST_P(SharedTransactionTest, FileIsCutOrFilledWithZeros) {
    provider().truncateToSize(m_target, 3);
    expectOnlyTarget("old");
    provider().truncateToSize(m_target, 5);
    expectOnlyTarget(std::string_view("old\0\0", 5));
    provider().truncateToSize(m_target, 0);
    expectOnlyTarget("");
    provider().removeFile(m_target);
    expectError(ErrorCode::NotFound, m_target, [&] { provider().truncateToSize(m_target, 1); });
}

}  // namespace
}  // namespace foundation::test
