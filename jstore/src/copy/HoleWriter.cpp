#include "copy/HoleWriter.h"

#include <cstring>

#include "foundation/storage/provider/Exception.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;

namespace {

/// Whether the first byte is zero and each byte equals the next one. Data mostly differs within its first few bytes.
bool isZero(std::string_view bytes) {
    return bytes.front() == '\0' && std::memcmp(bytes.data(), bytes.data() + 1, bytes.size() - 1) == 0;
}

}  // namespace

void HoleWriter::write(std::string_view bytes) {
    if (bytes.empty()) {
        return;
    }
    if (!isZero(bytes)) {
        endHole(m_end);
        append(bytes);
    }
    m_end += bytes.size();
}

void HoleWriter::finish() {
    if (m_written < m_end) {
        endHole(m_end - 1);
        append({"\0", 1});
    }
}

void HoleWriter::append(std::string_view bytes) {
    writeAll(m_to, bytes.data(), static_cast<std::streamsize>(bytes.size()));
    m_written += bytes.size();
}

/// Moves to the end of the hole, or fills it where the back end cannot move.
void HoleWriter::endHole(std::uint64_t end) {
    if (m_written == end) {
        return;
    }
    try {
        m_to.stream.seek(static_cast<std::streamoff>(end), std::ios_base::beg);
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::NotSupported) {
            throw;
        }
        writeZeros(m_to, end - m_written);
    }
    m_written = end;
}

}  // namespace jstore
