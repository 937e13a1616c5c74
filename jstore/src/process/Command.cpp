#include "process/Command.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>

#include "process/Inheritance.h"

namespace jstore {

namespace {

constexpr const char* Shell = "/bin/sh";

/// What a child gets of this process's descriptors and signals, freed with the object.
class ChildSettings {
public:
    ChildSettings() {
        m_error = ::posix_spawn_file_actions_init(&m_actions);
        note(::posix_spawnattr_init(&m_attributes));
    }
    ~ChildSettings() {
        ::posix_spawn_file_actions_destroy(&m_actions);
        ::posix_spawnattr_destroy(&m_attributes);
    }
    ChildSettings(const ChildSettings&) = delete;
    ChildSettings& operator=(const ChildSettings&) = delete;

    void emptyInput() { note(::posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0)); }
    void outputToError() { note(::posix_spawn_file_actions_adddup2(&m_actions, STDERR_FILENO, STDOUT_FILENO)); }

    void blockNoSignal() {
        sigset_t none;
        ::sigemptyset(&none);
        note(::posix_spawnattr_setsigmask(&m_attributes, &none));
        note(::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK));
    }

    /// Closes whatever this process and Java have opened.
    void keepOnly(const std::vector<int>& inherited) {
        int next = STDERR_FILENO + 1;
        for (const int kept : inherited) {
            for (; next < kept; ++next) {
                note(::posix_spawn_file_actions_addclose(&m_actions, next));
            }
            next = kept + 1;
        }
        note(::posix_spawn_file_actions_addclosefrom_np(&m_actions, next));
    }

    [[nodiscard]] const posix_spawn_file_actions_t* actions() const noexcept { return &m_actions; }
    [[nodiscard]] const posix_spawnattr_t* attributes() const noexcept { return &m_attributes; }
    [[nodiscard]] int error() const noexcept { return m_error; }

private:
    void note(int error) { m_error = m_error == 0 ? error : m_error; }

    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
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
        environment.emplace_back(name).append("=").append(value);
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
    ChildSettings settings;
    settings.emptyInput();
    if (m_output == Output::ToStandardError) {
        settings.outputToError();
    }
    settings.keepOnly(inheritedDescriptors());
    settings.blockNoSignal();
    keepEndsOfChildren();
    std::vector<std::string> environment = environmentWith(variables);
    std::vector<char*> pointers;
    pointers.reserve(environment.size() + 1);
    for (std::string& assignment : environment) {
        pointers.push_back(assignment.data());
    }
    pointers.push_back(nullptr);
    std::array<std::string, 3> words{"sh", "-c", m_text};
    const std::array<char*, 4> arguments{words[0].data(), words[1].data(), words[2].data(), nullptr};
    pid_t child = 0;
    const int error = settings.error() != 0 ? settings.error()
                                            : ::posix_spawn(&child, Shell, settings.actions(), settings.attributes(),
                                                            arguments.data(), pointers.data());
    return error != 0 ? cannotRun(error) : outcomeOf(child);
}

}  // namespace jstore
