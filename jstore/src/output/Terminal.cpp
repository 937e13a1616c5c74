#include "output/Terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

namespace jstore {

namespace {

bool isPipe(int stream) {
    struct stat status = {};
    return ::fstat(stream, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

/// The terminal of standard error, opened anew so that writing to it never blocks: a flag on standard error itself
/// would hold for all the programs that share it. Negative if it cannot be opened. Left open for as long as the process
/// runs.
int ownTerminal() {
    static const int descriptor =
        ::open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);  // NOLINT: the call is variadic
    return descriptor;
}

/// A terminal that was stopped takes nothing. It could be stopped directly after this answer; a write to ownTerminal()
/// then fails instead of blocking.
bool takesText(int terminal) {
    pollfd state{terminal, POLLOUT, 0};
    return ::poll(&state, 1, 0) == 1;
}

}  // namespace

bool Terminal::canDraw() {
    const char* const kind = std::getenv("TERM");
    const bool moves = kind != nullptr && *kind != 0 && std::string_view(kind) != "dumb";
    return moves && ::isatty(STDERR_FILENO) == 1 && !isPipe(STDOUT_FILENO);
}

std::size_t Terminal::columns() {
    constexpr std::size_t usual = 80;
    winsize size = {};
    const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : usual;
}

bool Terminal::inForeground() {
    const pid_t group = ::tcgetpgrp(STDERR_FILENO);
    return group == -1 || group == ::getpgrp();  // -1: it controls no processes.
}

bool Terminal::show(std::string_view text) {
    const std::string line = "\r\x1B[K" + std::string(text);
    const int terminal = ownTerminal();
    if (terminal < 0 && !takesText(STDERR_FILENO)) {
        return false;
    }
    std::string_view rest = line;
    while (!rest.empty()) {
        const ssize_t written = ::write(terminal < 0 ? STDERR_FILENO : terminal, rest.data(), rest.size());
        if (written < 0 && errno != EINTR) {
            return false;  // A line that cannot be drawn is no error of the command.
        }
        rest.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace jstore
