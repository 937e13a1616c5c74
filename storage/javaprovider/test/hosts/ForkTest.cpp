// Hosts that fork, before and after the machine starts, with providers and streams alive.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "hosts/HostProcess.h"

namespace storage::javaprovider::test {
namespace {

namespace fs = std::filesystem;
using foundation::storage::provider::ByteStream;
using foundation::storage::provider::IProvider;

/// The text of the error that the action throws.
std::string errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "none";
}

/// Forks, runs the action in the child and lets it end; the child's exit code, -1 when a signal ended it.
int exitOfChild(const std::function<void()>& child, void (*end)(int)) {
    const pid_t pid = fork();
    if (pid == 0) {
        alarm(30);
        child();
        end(::testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    EXPECT_EQ(waitpid(pid, &status, 0), pid);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void expectMachineIsGone(jvm_interface::JVM& jvm, const fs::path& data, std::unique_ptr<IProvider>& provider,
                         std::unique_ptr<ByteStream>& stream) {
    EXPECT_EQ(jvm.getJavaVM(), nullptr);
    EXPECT_EQ(errorOf([&] { static_cast<void>(provider->fileExists(in(data, u"a"))); }), "JVM remvoed");
    EXPECT_EQ(errorOf([&] { stream->write("x", 1); }), "JVM remvoed");
    stream.reset();
    provider.reset();
}

class ForkTest : public ::testing::TestWithParam<void (*)(int)> {};

TEST_P(ForkTest, ChildFindsNoMachineAndEndsInPeace) {
    expectSilentExit([](const fs::path& data) {
        const auto jvm = startMachine();
        auto provider = makeProvider(jvm);
        auto stream = openNew(*provider, data, u"a");
        EXPECT_EQ(exitOfChild([&] { expectMachineIsGone(*jvm, data, provider, stream); }, GetParam()), 0);
        EXPECT_EQ(stream->write("x", 1), 1);
        expectWorks(*provider, data, u"b");
    });
}

TEST_P(ForkTest, ChildMayLeaveEverythingAsItIs) {
    expectSilentExit([](const fs::path& data) {
        const auto jvm = startMachine();
        auto provider = makeProvider(jvm);
        auto stream = openNew(*provider, data, u"a");
        EXPECT_EQ(exitOfChild([] {}, GetParam()), 0);
        EXPECT_EQ(stream->write("x", 1), 1);
    });
}

TEST_P(ForkTest, ProcessesForkedBeforeTheStartHaveMachinesOfTheirOwn) {
    expectSilentExit([](const fs::path& data) {
        const auto child = [&] { expectWorks(*makeProvider(startMachine()), data, u"child"); };
        EXPECT_EQ(exitOfChild(child, GetParam()), 0);
        expectWorks(*makeProvider(startMachine()), data, u"parent");
    });
}

INSTANTIATE_TEST_SUITE_P(EndBy, ForkTest, ::testing::Values(&std::exit, &_exit),
                         [](const auto& each) { return each.param == &_exit ? "_exit" : "exit"; });

}  // namespace
}  // namespace storage::javaprovider::test
