#include "support/Screen.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace jstore::test {

namespace {

constexpr int PatienceMs = 60'000;

[[noreturn]] void become(std::vector<std::string>& command, const Screen::Setup& setup, int output) {
    ::setenv("TERM", setup.terminal.c_str(), 1);
    ::setenv("LC_ALL", "C.UTF-8", 1);
    ::unsetenv("JSTORE_CLASS_PATH");
    if (output >= 0) {
        ::dup2(output, STDOUT_FILENO);
    }
    std::vector<char*> arguments;
    for (auto& word : command) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    ::execvp(arguments.front(), arguments.data());
    ::_exit(127);
}

/// Whether an escape sequence is complete: ESC [ … letter, or ESC and one other character.
bool endsSequence(const std::string& sequence) {
    if (sequence.size() < 2) {
        return false;
    }
    return sequence[1] != '[' ||
           (sequence.size() > 2 && std::isalpha(static_cast<unsigned char>(sequence.back())) != 0);
}

}  // namespace

Screen::Screen(std::vector<std::string> command, const Setup& setup) {
    std::array<int, 2> ends{-1, -1};
    if (setup.outputToPipe && ::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    winsize size{25, setup.columns, 0, 0};
    m_pid = ::forkpty(&m_terminal, nullptr, nullptr, &size);
    if (m_pid == 0) {
        become(command, setup, ends[1]);
    }
    m_pipe = ends[0];
    if (ends[1] >= 0) {
        ::close(ends[1]);
    }
    if (m_pid < 0) {
        throw std::system_error(errno, std::generic_category(), "forkpty");
    }
}

Screen::~Screen() {
    if (m_pid > 0) {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
    ::close(m_terminal);
    if (m_pipe >= 0) {
        ::close(m_pipe);
    }
}

bool Screen::read(int timeoutMs) {
    pollfd end{m_terminal, POLLIN, 0};
    std::array<char, 4096> buffer{};
    if (::poll(&end, 1, timeoutMs) <= 0) {
        return false;
    }
    // The other side closed is an error here, not an end.
    const auto count = ::read(m_terminal, buffer.data(), buffer.size());
    if (count <= 0) {
        return false;
    }
    show({buffer.data(), static_cast<std::size_t>(count)});
    return true;
}

void Screen::show(const std::string& bytes) {
    m_raw += bytes;
    for (const char c : bytes) {
        if (!m_pending.empty() || c == '\x1B') {
            m_pending += c;
            if (m_pending == "\x1B[K") {
                m_line.resize(std::min(m_line.size(), m_column));
            }
            if (endsSequence(m_pending)) {
                m_pending.clear();
            }
        } else if (c == '\r') {
            m_column = 0;
        } else if (c == '\b') {
            m_column -= std::min<std::size_t>(m_column, 1);
        } else if (c == '\n') {
            m_lines.push_back(std::exchange(m_line, {}));
        } else {
            m_line.resize(std::max(m_line.size(), m_column + 1), ' ');
            m_line[m_column++] = c;
        }
    }
}

bool Screen::waitFor(const std::string& text) {
    while (m_line.find(text) == std::string::npos) {
        if (!read(PatienceMs)) {
            return false;
        }
    }
    return true;
}

int Screen::finish() {
    while (read(PatienceMs)) {
    }
    int status = 0;
    ::waitpid(m_pid, &status, 0);
    m_pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void Screen::resize(unsigned short columns) const {
    const winsize size{25, columns, 0, 0};
    ::ioctl(m_terminal, TIOCSWINSZ, &size);
}

void Screen::type(const std::string& keys) const {
    if (::write(m_terminal, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
        throw std::system_error(errno, std::generic_category(), "terminal");
    }
}

void Screen::stop() const {
    // On the program's side of the terminal, since what is typed takes effect a little later.
    const int side = ::open(::ptsname(m_terminal), O_RDWR | O_NOCTTY | O_CLOEXEC);
    const bool stopped = side >= 0 && ::tcflow(side, TCOOFF) == 0;
    ::close(side);
    if (!stopped) {
        throw std::system_error(errno, std::generic_category(), "terminal");
    }
}

bool Screen::hasThread(const std::string& name) const {
    for (const auto& task : std::filesystem::directory_iterator("/proc/" + std::to_string(m_pid) + "/task")) {
        std::string found;
        std::getline(std::ifstream(task.path() / "comm") >> std::ws, found);
        if (found == name) {
            return true;
        }
    }
    return false;
}

}  // namespace jstore::test
