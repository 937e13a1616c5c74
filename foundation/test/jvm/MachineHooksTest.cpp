#include "jvm/MachineHooks.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <string>
#include <string_view>

namespace storage::jvm::detail {
namespace {

/// What stands in for the function of the system.
template <class Function>
Function* standIn(std::string_view name) {
    const auto imports = hookImports();
    return reinterpret_cast<Function*>(std::ranges::find(imports, name, &Import::name)->replacement);
}

TEST(MachineHooksTest, WhatIsWrittenWhileAMachineIsMadeIsKeptUpToALimit) {
    beginCreation();
    auto* const write = standIn<ssize_t(int, const void*, std::size_t)>("write");
    EXPECT_EQ(write(STDOUT_FILENO, "some words", 10), 10);
    const std::string more(20'000, 'x');
    EXPECT_EQ(write(STDERR_FILENO, more.data(), more.size()), static_cast<ssize_t>(more.size()));
    EXPECT_EQ(creationOutput(), "some words");
    reportReturn();
    EXPECT_EQ(awaitCreation(), CreationState::Returned);
}

// The machine forks to run commands (-XX:OnError). In such a child no thread is waited for, and no lock given back.
TEST(MachineHooksTest, ChildThatTheMachineForksMayEnd) {
    sigset_t ended;
    sigemptyset(&ended);
    sigaddset(&ended, SIGCHLD);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &ended, nullptr), 0);
    beginCreation();
    const pid_t child = fork();
    if (child == 0) {
        standIn<ssize_t(int, const void*, std::size_t)>("write")(STDOUT_FILENO, "a word", 6);
        standIn<void(int)>("_exit")(7);
    }
    const timespec longest{.tv_sec = 20, .tv_nsec = 0};
    EXPECT_EQ(sigtimedwait(&ended, nullptr, &longest), SIGCHLD);
    kill(child, SIGKILL);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 7) << status;
    pthread_sigmask(SIG_UNBLOCK, &ended, nullptr);
    reportReturn();
    EXPECT_EQ(awaitCreation(), CreationState::Returned);
}

}  // namespace
}  // namespace storage::jvm::detail
