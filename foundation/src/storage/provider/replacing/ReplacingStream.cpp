#include "storage/provider/replacing/ReplacingStream.h"

#include <utility>

namespace foundation::storage::provider::detail {

ReplacingStream::ReplacingStream(ScratchFile scratch, ClosingStream stream)
    : m_scratch(std::move(scratch)), m_stream(std::move(stream)) {}

std::streamsize ReplacingStream::read(char* destination, std::streamsize count) {
    return m_scratch.named([&] { return stream().read(destination, count); });
}

std::streamsize ReplacingStream::write(const char* source, std::streamsize count) {
    return m_scratch.named([&] { return stream().write(source, count); });
}

std::streampos ReplacingStream::seek(std::streamoff offset, std::ios_base::seekdir way) {
    return m_scratch.named([&] { return stream().seek(offset, way); });
}

void ReplacingStream::close() {
    if (!m_stream.isOpen()) {
        return;
    }
    // Discards the file unless every byte is known to have arrived.
    m_outcome = Outcome::GivenUp;
    m_scratch.named([this] { m_stream.close(); });
    m_outcome = Outcome::Open;
}

void ReplacingStream::commit() {
    if (m_outcome != Outcome::Open) {
        refuse();
    }
    close();
    m_scratch.replaceTarget(ReplacementPolicy::ReplaceExistingFile);
    m_outcome = Outcome::Committed;
}

void ReplacingStream::rollback() {
    if (m_outcome == Outcome::Committed) {
        refuse();
    }
    m_outcome = Outcome::GivenUp;
    m_stream.closeSilently();
    m_scratch.remove();
}

ByteStream& ReplacingStream::stream() const {
    if (!m_stream.isOpen()) {
        refuse();
    }
    return *m_stream;
}

void ReplacingStream::refuse() const { throw Exception(ErrorCode::Unavailable, m_scratch.target()); }

}  // namespace foundation::storage::provider::detail
