#include "process/ChildProcess.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <optional>
#include <system_error>

#include "process/Descriptor.h"
#include "process/Inheritance.h"

namespace jstore::doctor {

namespace {

/// Undoes what this program has set for a signal; one that the parent process chose to ignore stays ignored.
void endBy(int signal) {
    struct sigaction present = {};
    if (::sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN) {
        std::signal(signal, SIG_DFL);
    }
}

/// The child's way from its first instruction to its last.
[[noreturn]] void live(const std::function<void()>& work, int output) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        endBy(signal);
    }
    ::dup2(output, STDOUT_FILENO);
    ::dup2(output, STDERR_FILENO);
    try {
        work();
        std::_Exit(EXIT_SUCCESS);
    } catch (const std::exception& error) {
        std::cerr << error.what() << std::flush;
        std::_Exit(EXIT_FAILURE);
    }
}

std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 4096> buffer{};
    while (true) {
        const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return text;
        }
    }
}

bool endsWell(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "waitpid");
        }
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == EXIT_SUCCESS;
}

}  // namespace

ChildEnd runInChild(const std::function<void()>& work) {
    std::array<int, 2> ends{-1, -1};
    const int piped = ::pipe2(ends.data(), O_CLOEXEC);
    const Descriptor reading(piped == 0 ? ends[0] : -1, "pipe");
    std::optional<Descriptor> writing(std::in_place, ends[1], "pipe");
    keepEndsOfChildren();
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    if (child == 0) {
        live(work, writing->get());
    }
    writing.reset();
    ChildEnd end;
    end.words = readAll(reading.get());
    end.well = endsWell(child);
    return end;
}

}  // namespace jstore::doctor
