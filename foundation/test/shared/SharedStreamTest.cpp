// What every byte stream promises.
#include <array>

#include "SharedTest.h"

namespace foundation::test {
namespace {

using storage::provider::ByteStream;
using storage::provider::ByteStreamOpenOptions;

class SharedStreamTest : public SharedTest {
protected:
    void SetUp() override {
        SharedTest::SetUp();
        write(m_file = at(u"file"), "0123456789");
    }

    std::streamsize read(ByteStream& stream, std::streamsize count) { return stream.read(m_bytes.data(), count); }

    /// The stream is closed: every operation but another close() is refused.
    void expectClosed(ByteStream& stream) {
        expectError(ErrorCode::Unavailable, m_file, [&] { (void)read(stream, 1); });
        expectError(ErrorCode::Unavailable, m_file, [&] { (void)stream.write("x", 1); });
        expectError(ErrorCode::Unavailable, m_file, [&] { (void)stream.seek(0, std::ios_base::beg); });
        EXPECT_NO_THROW(stream.close());
    }

    StorageIRI m_file;
    std::array<char, 16> m_bytes{};
};
SHARED_TESTS(SharedStreamTest);

TEST_P(SharedStreamTest, ReadingAdvancesToTheEnd) {
    const auto stream = provider().openReadOnlyByteStream(m_file);
    EXPECT_EQ(stream->seek(6, std::ios_base::beg), std::streampos(6));
    EXPECT_EQ(read(*stream, 0), 0);
    EXPECT_EQ(read(*stream, 16), 4) << "what is left";
    EXPECT_EQ(std::string_view(m_bytes.data(), 4), "6789");
    EXPECT_EQ(read(*stream, 16), -1);
    EXPECT_EQ(stream->seek(0, std::ios_base::cur), std::streampos(10));
    stream->close();
}

TEST_P(SharedStreamTest, StreamForReadingRefusesToWrite) {
    const auto stream = provider().openReadOnlyByteStream(m_file);
    expectError(ErrorCode::AccessDenied, m_file, [&] { (void)stream->write("x", 1); });
    EXPECT_EQ(stream->seek(0, std::ios_base::cur), std::streampos(0));
    stream->close();
    EXPECT_EQ(bytesOf(m_file), "0123456789");
}

TEST_P(SharedStreamTest, PositionBeforeTheBeginningIsRefusedAndNothingMoves) {
    const auto stream = provider().openByteStream(m_file);
    EXPECT_EQ(stream->seek(-2, std::ios_base::end), std::streampos(8));
    expectError(ErrorCode::InvalidLocation, m_file, [&] { (void)stream->seek(-9, std::ios_base::cur); });
    expectError(ErrorCode::InvalidLocation, m_file, [&] { (void)stream->seek(-11, std::ios_base::end); });
    expectError(ErrorCode::InvalidLocation, m_file, [&] { (void)stream->seek(-1, std::ios_base::beg); });
    EXPECT_EQ(stream->seek(0, std::ios_base::cur), std::streampos(8));
    stream->close();
}

TEST_P(SharedStreamTest, WritingPastTheEndFillsTheGapWithZeros) {
    const auto stream = provider().openByteStream(m_file, {.content = ByteStreamOpenOptions::Content::Truncate});
    EXPECT_EQ(stream->write("ab", 2), 2);
    EXPECT_EQ(stream->seek(3, std::ios_base::end), std::streampos(5));
    EXPECT_EQ(read(*stream, 1), -1);
    EXPECT_EQ(stream->write("c", 1), 1);
    stream->close();
    EXPECT_EQ(bytesOf(m_file), std::string_view("ab\0\0\0c", 6));
}

TEST_P(SharedStreamTest, ClosedStreamIsUnavailableAndMayBeClosedAgain) {
    const auto writing = provider().openByteStream(m_file);
    writing->close();
    expectClosed(*writing);
    const auto reading = provider().openReadOnlyByteStream(m_file);
    reading->close();
    expectClosed(*reading);
    EXPECT_EQ(bytesOf(m_file), "0123456789");
}

TEST_P(SharedStreamTest, ClosedTransactionalStreamMayBeClosedAgain) {
    const auto stream = provider().openTransactionalStream(m_file);
    stream->close();
    expectClosed(*stream);
    stream->rollback();
    expectClosed(*stream);
}

}  // namespace
}  // namespace foundation::test
