#include "commands/Command.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>
#include <system_error>

namespace bench {

namespace {

/// Sends a program's standard output to nowhere.
class NoOutput {
public:
    NoOutput() {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    }
    ~NoOutput() { posix_spawn_file_actions_destroy(&m_actions); }
    NoOutput(const NoOutput&) = delete;
    NoOutput& operator=(const NoOutput&) = delete;

    [[nodiscard]] const posix_spawn_file_actions_t* get() const noexcept { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

void runToEnd(const std::vector<std::string>& command) {
    const NoOutput actions;
    std::vector<char*> arguments;
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));  // posix_spawn() does not change them
    }
    arguments.push_back(nullptr);
    pid_t child = 0;
    if (const int error = posix_spawnp(&child, arguments[0], actions.get(), nullptr, arguments.data(), environ)) {
        throw std::runtime_error(command[0] + ": " + std::generic_category().message(error));
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(command[0] + " failed");
    }
}

}  // namespace

double timeOf(const std::vector<std::string>& command) {
    const auto start = std::chrono::steady_clock::now();
    runToEnd(command);
    const std::chrono::duration<double, std::nano> elapsed = std::chrono::steady_clock::now() - start;
    return elapsed.count();
}

}  // namespace bench
