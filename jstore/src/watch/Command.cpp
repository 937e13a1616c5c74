#include "watch/Command.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>

namespace jstore {

namespace {

constexpr const char* Shell = "/bin/sh";

/// Where the child's standard streams lead, freed with the object.
class Streams {
public:
    Streams() { m_error = ::posix_spawn_file_actions_init(&m_actions); }
    ~Streams() { ::posix_spawn_file_actions_destroy(&m_actions); }
    Streams(const Streams&) = delete;
    Streams& operator=(const Streams&) = delete;

    void emptyInput() { note(::posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0)); }
    void outputToError() { note(::posix_spawn_file_actions_adddup2(&m_actions, STDERR_FILENO, STDOUT_FILENO)); }

    [[nodiscard]] const posix_spawn_file_actions_t* get() const noexcept { return &m_actions; }
    [[nodiscard]] int error() const noexcept { return m_error; }

private:
    void note(int error) { m_error = m_error == 0 ? error : m_error; }

    posix_spawn_file_actions_t m_actions{};
    int m_error = 0;
};

bool isIn(const Command::Variables& variables, std::string_view assignment) {
    for (const auto& [name, value] : variables) {
        if (assignment.starts_with(name + '=')) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> environmentWith(const Command::Variables& variables) {
    std::vector<std::string> environment;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (!isIn(variables, *variable)) {
            environment.emplace_back(*variable);
        }
    }
    for (const auto& [name, value] : variables) {
        environment.push_back(name + '=' + value);
    }
    return environment;
}

std::string cannotRun(int error) { return "cannot be run: " + std::generic_category().message(error); }

std::string outcomeOf(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            return cannotRun(errno);
        }
    }
    if (WIFSIGNALED(status)) {
        return fmt::format("was killed by signal {}", WTERMSIG(status));
    }
    return WEXITSTATUS(status) == 0 ? std::string() : fmt::format("ended with {}", WEXITSTATUS(status));
}

}  // namespace

std::string Command::run(const Variables& variables) const {
    Streams streams;
    streams.emptyInput();
    if (m_output == Output::ToStandardError) {
        streams.outputToError();
    }
    auto environment = environmentWith(variables);
    std::vector<char*> pointers;
    for (auto& assignment : environment) {
        pointers.push_back(assignment.data());
    }
    pointers.push_back(nullptr);
    std::array<std::string, 3> words{"sh", "-c", m_text};
    const std::array<char*, 4> arguments{words[0].data(), words[1].data(), words[2].data(), nullptr};
    pid_t child = 0;
    const int error = streams.error() != 0
                          ? streams.error()
                          : ::posix_spawn(&child, Shell, streams.get(), nullptr, arguments.data(), pointers.data());
    return error != 0 ? cannotRun(error) : outcomeOf(child);
}

}  // namespace jstore
