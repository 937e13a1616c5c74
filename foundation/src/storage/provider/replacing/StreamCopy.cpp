#include "foundation/storage/provider/StreamCopy.h"

#include <algorithm>
#include <vector>

#include "foundation/storage/provider/Exception.h"

namespace foundation::storage::provider {

namespace {

constexpr std::streamsize BufferSize = std::streamsize{256} * 1024;

/// How many operations in a row may move nothing before the copy fails.
constexpr int Patience = 100;

constexpr std::streamsize AtEnd = -1;

/// How many of the remaining bytes one operation may move.
std::streamsize portionOf(std::uint64_t left) {
    return static_cast<std::streamsize>(std::min(left, static_cast<std::uint64_t>(BufferSize)));
}

/// Checks the counts that one stream reports.
class Progress {
public:
    explicit Progress(const StorageIRI& location) : m_location(location) {}

    void note(std::streamsize moved, std::streamsize asked) {
        if (moved < 0 || moved > asked) {
            throw Exception(ErrorCode::Unknown, m_location);
        }
        m_idle = moved == 0 ? m_idle + 1 : 0;
        if (m_idle == Patience) {
            throw Exception(ErrorCode::Unavailable, m_location);
        }
    }

private:
    const StorageIRI& m_location;
    int m_idle = 0;
};

}  // namespace

std::streamsize readSome(StreamEnd from, char* destination, std::streamsize count) {
    Progress progress(from.location);
    std::streamsize read = 0;
    while (read == 0) {
        read = from.stream.read(destination, count);
        if (read == AtEnd) {
            return 0;
        }
        progress.note(read, count);
    }
    return read;
}

void writeAll(StreamEnd to, const char* source, std::streamsize count) {
    Progress progress(to.location);
    while (count > 0) {
        const std::streamsize written = to.stream.write(source, count);
        progress.note(written, count);
        source += written;
        count -= written;
    }
}

std::uint64_t copyBytes(StreamEnd from, StreamEnd to, std::uint64_t limit) {
    std::vector<char> buffer(BufferSize);
    std::uint64_t copied = 0;
    while (copied < limit) {
        const std::streamsize count = readSome(from, buffer.data(), portionOf(limit - copied));
        if (count == 0) {
            break;
        }
        writeAll(to, buffer.data(), count);
        copied += static_cast<std::uint64_t>(count);
    }
    return copied;
}

void writeZeros(StreamEnd to, std::uint64_t count) {
    const std::vector<char> zeros(static_cast<std::size_t>(portionOf(count)));
    while (count > 0) {
        const std::streamsize portion = portionOf(count);
        writeAll(to, zeros.data(), portion);
        count -= static_cast<std::uint64_t>(portion);
    }
}

}  // namespace foundation::storage::provider
