#include "java/ArchiveChecksum.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <optional>
#include <system_error>
#include <vector>

#include "process/Descriptor.h"

namespace jstore {

namespace fs = std::filesystem;

namespace {

constexpr std::array<char, 8> TrailerMark{'j', 's', 't', 'o', 'r', 'e', ' ', '1'};

struct Trailer {
    std::array<char, 8> mark = TrailerMark;
    std::uint64_t size = 0;
    std::uint64_t checksum = 0;

    bool operator==(const Trailer&) const = default;
};

constexpr std::size_t LaneBytes = 4 * sizeof(std::uint64_t);
constexpr std::size_t PortionBytes = std::size_t{128} * 1024;
static_assert(PortionBytes % LaneBytes == 0);

/// Four sums side by side; each bit of the input changes one of them for good. As fast as the bytes can be read.
class Checksum {
public:
    /// Adds bytes. Only the last portion may have a length that is no multiple of LaneBytes.
    void add(const char* bytes, std::size_t count) {
        std::array<std::uint64_t, 4> words{};
        for (std::size_t at = 0; at < count; at += LaneBytes) {
            words = {};
            std::memcpy(words.data(), bytes + at, std::min(LaneBytes, count - at));
            for (std::size_t lane = 0; lane < words.size(); ++lane) {
                m_lanes[lane] = std::rotl(m_lanes[lane] ^ words[lane], 29) * Odd;
            }
        }
    }

    [[nodiscard]] std::uint64_t value() const {
        std::uint64_t value = 0;
        for (const std::uint64_t lane : m_lanes) {
            value = std::rotl(value ^ lane, 29) * Odd;
        }
        return value ^ value >> 32U;
    }

private:
    static constexpr std::uint64_t Odd = 0x9E3779B97F4A7C15U;
    std::array<std::uint64_t, 4> m_lanes{1, 2, 3, 4};
};

/// Reads up to `count` bytes at the offset. Returns how many: fewer at the file's end or after an error.
std::size_t readPortion(int file, std::uint64_t offset, char* bytes, std::size_t count) {
    std::size_t filled = 0;
    while (filled < count) {
        const ssize_t got = ::pread(file, bytes + filled, count - filled, static_cast<off_t>(offset + filled));
        if (got > 0) {
            filled += static_cast<std::size_t>(got);
        } else if (got == 0 || errno != EINTR) {
            break;
        }
    }
    return filled;
}

/// The trailer for the first `size` bytes of a file; none if they cannot be read.
std::optional<Trailer> trailerOf(int file, std::uint64_t size) {
    Checksum checksum;
    std::vector<char> portion(PortionBytes);
    for (std::uint64_t at = 0; at < size; at += PortionBytes) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(PortionBytes, size - at));
        if (readPortion(file, at, portion.data(), count) != count) {
            return std::nullopt;
        }
        checksum.add(portion.data(), count);
    }
    return Trailer{TrailerMark, size, checksum.value()};
}

/// The size of a regular file; none for anything else.
std::optional<std::uint64_t> sizeOfRegular(int file) {
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(status.st_size);
}

}  // namespace

void appendChecksum(const fs::path& file) {
    const Descriptor descriptor(::open(file.c_str(), O_RDWR | O_CLOEXEC), file.string());
    const std::optional<std::uint64_t> size = sizeOfRegular(descriptor.get());
    const std::optional<Trailer> made = size ? trailerOf(descriptor.get(), *size) : std::nullopt;
    if (!made || ::pwrite(descriptor.get(), &*made, sizeof(Trailer), static_cast<off_t>(*size)) != sizeof(Trailer)) {
        throw std::system_error(errno, std::generic_category(), file.string());
    }
}

bool hasValidChecksum(const fs::path& file) {
    std::error_code ignored;  // A file that cannot be examined has no checksum.
    if (!fs::is_regular_file(file, ignored)) {
        return false;
    }
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return false;
    }
    const Descriptor owner(descriptor, file.string());
    const std::uint64_t size = sizeOfRegular(descriptor).value_or(0);
    Trailer found;
    if (size < sizeof(Trailer) || readPortion(descriptor, size - sizeof(Trailer), reinterpret_cast<char*>(&found),
                                              sizeof(Trailer)) != sizeof(Trailer)) {
        return false;
    }
    return found.size == size - sizeof(Trailer) && found == trailerOf(descriptor, found.size);
}

}  // namespace jstore
