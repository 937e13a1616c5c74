#include "support/Jstore.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ostream>
#include <sstream>
#include <system_error>
#include <utility>

namespace jstore::test {

namespace {

using Clock = std::chrono::steady_clock;

void check(int error, const char* what) {
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), what);
    }
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        result.push_back(line);
    }
    return result;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    for (auto& text : texts) {
        result.push_back(text.data());
    }
    result.push_back(nullptr);
    return result;
}

struct Pipe {
    int reader = -1;
    int writer = -1;

    explicit Pipe(bool isSocket = false) {
        std::array<int, 2> ends{};
        const int made = isSocket ? ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data())
                                  : ::pipe2(ends.data(), O_CLOEXEC);
        check(made == 0 ? 0 : errno, "pipe");
        reader = ends[0];
        writer = ends[1];
    }
};

/// The file actions of a spawn, freed with the object.
class FileActions {
public:
    FileActions() { check(::posix_spawn_file_actions_init(&m_actions), "file actions"); }
    ~FileActions() { ::posix_spawn_file_actions_destroy(&m_actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void moveTo(int from, int to) { check(::posix_spawn_file_actions_adddup2(&m_actions, from, to), "dup2"); }
    void close(int fd) { check(::posix_spawn_file_actions_addclose(&m_actions, fd), "close"); }
    void open(int fd, const char* path, int flags) {
        check(::posix_spawn_file_actions_addopen(&m_actions, fd, path, flags, 0), path);
    }
    void goTo(const std::filesystem::path& folder) {
        check(::posix_spawn_file_actions_addchdir_np(&m_actions, folder.c_str()), "chdir");
    }
    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};

bool names(const std::string& assignment, const std::string& name) { return assignment.starts_with(name + '='); }

/// What is left of the deadline, for poll(); at least 0.
int remainingMs(Clock::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::max<decltype(left)>(left, 0));
}

/// Appends what can be read; closes the end and sets it to -1 when it is exhausted.
void take(int& end, std::string& text) {
    std::array<char, 65536> buffer{};
    const auto count = ::read(end, buffer.data(), buffer.size());
    if (count > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
        return;
    }
    ::close(end);
    end = -1;
}

}  // namespace

std::vector<std::string> Outcome::errLines() const { return lines(err); }
std::vector<std::string> Outcome::outLines() const { return lines(out); }

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << "exit " << outcome.exitCode << ", signal " << outcome.signal << ", out \"" << outcome.out << "\", err \""
         << outcome.err << '"';
}

std::string programUnderTest() {
    const char* const other = std::getenv("JSTORE_UNDER_TEST");
    return other == nullptr ? JSTORE_PROGRAM : other;
}

Jstore::Jstore(std::vector<std::string> arguments) : m_arguments(std::move(arguments)) {
    m_arguments.insert(m_arguments.begin(), programUnderTest());
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string assignment = *variable;
        const bool changes = names(assignment, "JSTORE_CLASS_PATH") || names(assignment, "JAVA_TOOL_OPTIONS") ||
                             assignment.starts_with("LC_") || assignment.starts_with("LANG");
        if (!changes) {
            m_environment.push_back(assignment);
        }
    }
    m_environment.emplace_back("LC_ALL=C.UTF-8");
}

Jstore::~Jstore() {
    if (m_pid > 0) {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }
    for (const int end : {m_out, m_err}) {
        if (end >= 0) {
            ::close(end);
        }
    }
}

Jstore& Jstore::with(const std::string& name, const std::string& value) {
    std::erase_if(m_environment, [&](const std::string& assignment) { return names(assignment, name); });
    m_environment.push_back(name + '=' + value);
    return *this;
}

Jstore& Jstore::in(std::filesystem::path folder) {
    m_folder = std::move(folder);
    return *this;
}

Jstore& Jstore::outputTo(Output output) {
    m_output = output;
    return *this;
}

Jstore& Jstore::within(std::chrono::seconds limit) {
    m_limit = limit;
    return *this;
}

Jstore& Jstore::through(std::vector<std::string> wrapper) {
    m_wrapper = std::move(wrapper);
    return *this;
}

void Jstore::start() {
    const Pipe out(m_output == Output::SocketReaderGone);
    const Pipe err;
    FileActions actions;
    actions.open(STDIN_FILENO, "/dev/null", O_RDONLY);
    actions.moveTo(err.writer, STDERR_FILENO);
    actions.moveTo(out.writer, STDOUT_FILENO);
    if (m_output == Output::Closed) {
        actions.close(STDOUT_FILENO);
    } else if (m_output == Output::Full) {
        actions.open(STDOUT_FILENO, "/dev/full", O_WRONLY);
    }
    if (!m_folder.empty()) {
        actions.goTo(m_folder);
    }
    m_out = out.reader;
    m_err = err.reader;
    if (m_output == Output::ReaderGone || m_output == Output::SocketReaderGone) {
        ::close(m_out);
        m_out = -1;
    }
    auto words = m_wrapper;
    words.insert(words.end(), m_arguments.begin(), m_arguments.end());
    const auto arguments = pointers(words);
    const auto environment = pointers(m_environment);
    const int error =
        ::posix_spawnp(&m_pid, words.front().c_str(), actions.get(), nullptr, arguments.data(), environment.data());
    ::close(out.writer);
    ::close(err.writer);
    check(error, words.front().c_str());
}

bool Jstore::readSome(Clock::time_point deadline) {
    std::array<pollfd, 2> ends{{{m_out, POLLIN, 0}, {m_err, POLLIN, 0}}};
    if (::poll(ends.data(), ends.size(), remainingMs(deadline)) == 0) {
        return false;
    }
    if (ends[0].revents != 0) {
        take(m_out, m_outcome.out);
    }
    if (ends[1].revents != 0) {
        take(m_err, m_outcome.err);
    }
    return true;
}

bool Jstore::readUntil(const std::function<bool(const Outcome&)>& condition, std::chrono::milliseconds atMost) {
    const auto deadline = Clock::now() + atMost;
    while (!condition(m_outcome)) {
        if (!isOpen() || !readSome(deadline)) {
            return false;
        }
    }
    return true;
}

void Jstore::readAll() {
    const auto deadline = Clock::now() + m_limit;
    while (isOpen()) {
        if (!readSome(deadline)) {
            ADD_FAILURE() << "jstore did not end within " << m_limit.count() << " s";
            ::kill(m_pid, SIGKILL);
            return;
        }
    }
}

Outcome Jstore::wait() {
    readAll();
    int status = 0;
    rusage used{};
    ::wait4(m_pid, &status, 0, &used);
    m_pid = -1;
    m_outcome.peakKiB = used.ru_maxrss;
    m_outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    m_outcome.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return std::move(m_outcome);
}

Outcome Jstore::run() {
    start();
    return wait();
}

Outcome jstore(std::vector<std::string> arguments) { return Jstore(std::move(arguments)).run(); }

}  // namespace jstore::test
