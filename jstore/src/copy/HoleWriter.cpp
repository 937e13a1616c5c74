#include "copy/HoleWriter.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "foundation/storage/provider/Exception.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;

namespace {

/// Bytes that are all like their neighbour are all like the first. Data is told by its first few bytes, mostly.
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
        m_file.write(bytes);
        m_written += bytes.size();
    }
    m_end += bytes.size();
}

void HoleWriter::finish() {
    if (m_written < m_end) {
        endHole(m_end - 1);
        m_file.write({"\0", 1});
        m_written = m_end;
    }
}

void HoleWriter::endHole(std::uint64_t end) {
    if (m_written == end) {
        return;
    }
    try {
        m_file.moveTo(end);
    } catch (const Exception& error) {
        if (error.code() != ErrorCode::NotSupported) {
            throw;
        }
        const std::string zeros(static_cast<std::size_t>(std::min<std::uint64_t>(end - m_written, 65536)), '\0');
        for (auto left = end - m_written; left > 0; left -= std::min<std::uint64_t>(left, zeros.size())) {
            m_file.write(std::string_view(zeros).substr(0, static_cast<std::size_t>(left)));
        }
    }
    m_written = end;
}

}  // namespace jstore
