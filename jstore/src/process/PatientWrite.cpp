#include "process/PatientWrite.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>

#include "process/Interrupt.h"

namespace jstore {

namespace {

/// A pipe that is ready takes this much without blocking. A larger write could block and miss a signal.
std::size_t portionFor(int descriptor) noexcept {
    struct stat status = {};
    const bool regular = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    return regular ? SSIZE_MAX : PIPE_BUF;
}

/// False when a signal has arrived and the descriptor is not ready.
bool waitUntilReady(int descriptor) noexcept {
    std::array<pollfd, 2> sources{{{descriptor, POLLOUT, 0}, {interruptDescriptor(), POLLIN, 0}}};
    while (::poll(sources.data(), sources.size(), -1) < 0 && errno == EINTR) {
    }
    // True even if poll() failed: the write then reports what is wrong.
    return sources[0].revents != 0 || sources[1].revents == 0;
}

}  // namespace

int writePatiently(int descriptor, std::string_view text) noexcept {
    const std::size_t portion = portionFor(descriptor);
    while (!text.empty()) {
        if (!waitUntilReady(descriptor)) {
            return ECANCELED;
        }
        const ssize_t count = ::write(descriptor, text.data(), text.size() < portion ? text.size() : portion);
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            return errno;
        }
        text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return 0;
}

}  // namespace jstore
