#include "progress/Terminal.h"

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
    const auto group = ::tcgetpgrp(STDERR_FILENO);
    return group == -1 || group == ::getpgrp();  // -1: it controls no processes.
}

void Terminal::show(std::string_view text) {
    const auto line = "\r\x1B[K" + std::string(text);
    std::string_view rest = line;
    while (!rest.empty()) {
        const auto written = ::write(STDERR_FILENO, rest.data(), rest.size());
        if (written < 0 && errno != EINTR) {
            return;  // A line that cannot be drawn is no error of what it tells about.
        }
        rest.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

}  // namespace jstore
