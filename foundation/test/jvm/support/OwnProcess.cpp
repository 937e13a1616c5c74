#include "OwnProcess.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace test {

namespace {

constexpr unsigned DeadlineSeconds = 60;

[[noreturn]] void runAndExit(const std::function<void()>& scenario) {
    alarm(DeadlineSeconds);
    try {
        scenario();
    } catch (const std::exception& error) {
        ADD_FAILURE() << "the scenario threw: " << error.what();
    }
    std::exit(testing::Test::HasFailure() ? EXIT_FAILURE : EXIT_SUCCESS);
}

}  // namespace

int waitStatusOf(const std::function<void()>& scenario) {
    std::fflush(nullptr);  // or the child would write it once more
    const pid_t child = fork();
    if (child == 0) {
        runAndExit(scenario);
    }
    int status = -1;
    while (waitpid(child, &status, 0) == -1 && errno == EINTR) {
    }
    return status;
}

void inOwnProcess(const std::function<void()>& scenario) {
    const int status = waitStatusOf(scenario);
    if (WIFSIGNALED(status)) {
        ADD_FAILURE() << "the scenario's process was killed by signal " << WTERMSIG(status);
    } else if (!WIFEXITED(status) || WEXITSTATUS(status) != EXIT_SUCCESS) {
        ADD_FAILURE() << "the scenario failed in its process, with wait status " << status;
    }
}

}  // namespace test
