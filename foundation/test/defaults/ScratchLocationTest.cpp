#include <utility>

#include "DefaultsTest.h"

namespace foundation::test {
namespace {

using storage::provider::ByteStream;

/// Transactions whose caller chose where the uncommitted bytes are kept.
class ScratchLocationTest : public DefaultsTest {};

TEST_F(ScratchLocationTest, UncommittedBytesAreKeptThere) {
    write(m_target, "old");
    const auto stream = m_provider.openTransactionalStreamAtScratchLocation(m_target, m_source);
    EXPECT_EQ(bytesOf(m_source), "old");
    stream->commit();
    EXPECT_FALSE(m_provider.exists(m_source));
}

TEST_F(ScratchLocationTest, WhatIsThereIsKept) {
    write(m_target, "old");
    write(m_source, "precious");
    expectError(ErrorCode::AlreadyExists, m_source,
                [this] { (void)m_provider.openTransactionalStreamAtScratchLocation(m_target, m_source); });
    EXPECT_EQ(bytesOf(m_source), "precious");
    EXPECT_EQ(bytesOf(m_target), "old");
}

TEST_F(ScratchLocationTest, FileThatAnotherHasOpenedMeanwhileIsKept) {
    write(m_target, "old");
    std::unique_ptr<ByteStream> other;
    m_provider.setHook([&, done = false](std::string_view operation, const StorageIRI& at) mutable {
        if (operation == "openByteStream" && at == m_source && !std::exchange(done, true)) {
            other = m_provider.openByteStream(m_source);
            (void)other->write("precious", 8);
        }
    });
    expectError(ErrorCode::InUse, m_source,
                [this] { (void)m_provider.openTransactionalStreamAtScratchLocation(m_target, m_source); });
    other->close();
    EXPECT_EQ(bytesOf(m_source), "precious");
    EXPECT_EQ(bytesOf(m_target), "old");
}

TEST_F(ScratchLocationTest, NothingOfWhatAnotherWroteThereIsCommitted) {
    write(m_target, "old");
    m_provider.setHook([this, done = false](std::string_view operation, const StorageIRI& at) mutable {
        if (operation == "openByteStream" && at == m_source && !std::exchange(done, true)) {
            write(m_source, "longer than the content");
        }
    });
    m_provider.openTransactionalStreamAtScratchLocation(m_target, m_source)->commit();
    EXPECT_EQ(bytesOf(m_target), "old");
}

TEST_F(ScratchLocationTest, MissingFolderIsReported) {
    const StorageIRI scratch = m_folder.getChild(u"missing").getChild(u"scratch");
    expectError(ErrorCode::NotFound, scratch,
                [&] { (void)m_provider.openTransactionalStreamAtScratchLocation(m_target, scratch); });
}

TEST_F(ScratchLocationTest, LocationItselfIsNoScratch) {
    const StorageIRI same(u"java://mount/folder/./target");
    expectError(ErrorCode::InvalidLocation, same,
                [&] { (void)m_provider.openTransactionalStreamAtScratchLocation(m_target, same); });
    EXPECT_TRUE(names().empty());
}

}  // namespace
}  // namespace foundation::test
