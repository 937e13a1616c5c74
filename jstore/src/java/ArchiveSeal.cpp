#include "java/ArchiveSeal.h"

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

constexpr std::array<char, 8> SealMark{'j', 's', 't', 'o', 'r', 'e', ' ', '1'};

struct Seal {
    std::array<char, 8> mark = SealMark;
    std::uint64_t size = 0;
    std::uint64_t checksum = 0;

    bool operator==(const Seal&) const = default;
};

constexpr std::size_t LaneBytes = 4 * sizeof(std::uint64_t);
constexpr std::size_t PortionBytes = 128 * 1024;
static_assert(PortionBytes % LaneBytes == 0);

/// Four sums side by side, each changed for good by any bit that comes in: as fast as the bytes can be read.
class Checksum {
public:
    /// Takes bytes; only the last portion may be of a length that the lanes do not divide.
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
        for (const auto lane : m_lanes) {
            value = std::rotl(value ^ lane, 29) * Odd;
        }
        return value ^ value >> 32U;
    }

private:
    static constexpr std::uint64_t Odd = 0x9E3779B97F4A7C15U;
    std::array<std::uint64_t, 4> m_lanes{1, 2, 3, 4};
};

/// How many bytes could be read at the offset: fewer than asked for at the file's end, none after an error.
std::size_t readPortion(int file, std::uint64_t offset, char* bytes, std::size_t count) {
    std::size_t filled = 0;
    while (filled < count) {
        const auto got = ::pread(file, bytes + filled, count - filled, static_cast<off_t>(offset + filled));
        if (got > 0) {
            filled += static_cast<std::size_t>(got);
        } else if (got == 0 || errno != EINTR) {
            break;
        }
    }
    return filled;
}

/// The seal for the first bytes of a file; none when they cannot be read.
std::optional<Seal> sealOf(int file, std::uint64_t size) {
    Checksum checksum;
    std::vector<char> portion(PortionBytes);
    for (std::uint64_t at = 0; at < size; at += PortionBytes) {
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(PortionBytes, size - at));
        if (readPortion(file, at, portion.data(), count) != count) {
            return std::nullopt;
        }
        checksum.add(portion.data(), count);
    }
    return Seal{SealMark, size, checksum.value()};
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

void seal(const fs::path& file) {
    const Descriptor descriptor(::open(file.c_str(), O_RDWR | O_CLOEXEC), file.string());
    const auto size = sizeOfRegular(descriptor.get());
    const auto made = size ? sealOf(descriptor.get(), *size) : std::nullopt;
    if (!made || ::pwrite(descriptor.get(), &*made, sizeof(Seal), static_cast<off_t>(*size)) != sizeof(Seal)) {
        throw std::system_error(errno, std::generic_category(), file.string());
    }
}

bool isSealed(const fs::path& file) {
    std::error_code ignored;  // What cannot be looked at is not sealed.
    if (!fs::is_regular_file(file, ignored)) {
        return false;
    }
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return false;
    }
    const Descriptor owner(descriptor, file.string());
    const auto size = sizeOfRegular(descriptor).value_or(0);
    Seal found;
    if (size < sizeof(Seal) ||
        readPortion(descriptor, size - sizeof(Seal), reinterpret_cast<char*>(&found), sizeof(Seal)) != sizeof(Seal)) {
        return false;
    }
    return found.size == size - sizeof(Seal) && found == sealOf(descriptor, found.size);
}

}  // namespace jstore
