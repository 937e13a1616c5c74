#include "InMemoryStream.h"

#include <boost/date_time/posix_time/posix_time.hpp>

#include <algorithm>
#include <utility>

#include "foundation/storage/provider/Exception.h"

namespace foundation::test {

using storage::provider::ErrorCode;
using storage::provider::Exception;

InMemoryStream::InMemoryStream(storage::provider::StorageIRI location, std::shared_ptr<InMemoryContent> content,
                               Sharing sharing, bool writable)
    : m_location(std::move(location)),
      m_content(std::move(content)),
      m_exclusive(sharing == Sharing::Exclusive),
      m_writable(writable) {
    const std::lock_guard lock(m_content->mutex);
    if (m_content->openExclusively || (m_exclusive && m_content->openStreams > 0)) {
        throw Exception(ErrorCode::InUse, m_location);
    }
    ++m_content->openStreams;
    m_content->openExclusively = m_exclusive;
    m_open = true;
}

std::streamsize InMemoryStream::read(char* destination, std::streamsize count) {
    requireOpen();
    const std::lock_guard lock(m_content->mutex);
    const auto size = static_cast<std::streamoff>(m_content->bytes.size());
    if (count == 0) {
        return 0;
    }
    if (m_position >= size) {
        return -1;
    }
    const std::streamsize taken = std::min<std::streamsize>(count, size - m_position);
    std::copy_n(m_content->bytes.data() + m_position, taken, destination);
    m_position += taken;
    return taken;
}

std::streamsize InMemoryStream::write(const char* source, std::streamsize count) {
    requireOpen();
    if (!m_writable) {
        throw Exception(ErrorCode::AccessDenied, m_location);
    }
    const std::lock_guard lock(m_content->mutex);
    const auto end = static_cast<std::size_t>(m_position + count);
    m_content->bytes.resize(std::max(m_content->bytes.size(), end));
    std::copy_n(source, count, m_content->bytes.data() + m_position);
    m_content->lastModified = boost::posix_time::microsec_clock::universal_time();
    m_position += count;
    return count;
}

std::streampos InMemoryStream::seek(std::streamoff offset, std::ios_base::seekdir way) {
    requireOpen();
    const std::lock_guard lock(m_content->mutex);
    std::streamoff target = offset;
    if (way == std::ios_base::cur) {
        target += m_position;
    } else if (way == std::ios_base::end) {
        target += static_cast<std::streamoff>(m_content->bytes.size());
    }
    if (target < 0) {
        throw Exception(ErrorCode::InvalidLocation, m_location);
    }
    m_position = target;
    return m_position;
}

void InMemoryStream::close() {
    if (!std::exchange(m_open, false)) {
        return;
    }
    const std::lock_guard lock(m_content->mutex);
    --m_content->openStreams;
    if (m_exclusive) {
        m_content->openExclusively = false;
    }
}

void InMemoryStream::requireOpen() const {
    if (!m_open) {
        throw Exception(ErrorCode::Unavailable, m_location);
    }
}

}  // namespace foundation::test
