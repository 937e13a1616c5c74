#include "process/EventFile.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>

namespace jstore {

EventFile::EventFile() : m_descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK), "eventfd") {}

void EventFile::signal() const noexcept {
    const int before = errno;
    const std::uint64_t one = 1;
    // It fails only when the counter is full, and then the descriptor is readable already.
    [[maybe_unused]] const ssize_t written = ::write(descriptor(), &one, sizeof one);
    errno = before;
}

void EventFile::clear() const noexcept {
    std::uint64_t count = 0;
    // It fails only when nothing was signalled.
    [[maybe_unused]] const ssize_t read = ::read(descriptor(), &count, sizeof count);
}

}  // namespace jstore
