// Hosts that see to their threads themselves, and hosts with little stack.
#include <gmock/gmock.h>
#include <jni.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <csignal>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "SmallThread.h"
#include "hosts/HostProcess.h"

namespace storage::javaprovider::test {
namespace {

namespace fs = std::filesystem;
using foundation::storage::provider::IProvider;
using ::testing::AnyOf;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr std::size_t KiB = 1024;

bool isAttached(JavaVM* vm) {
    void* env = nullptr;
    return vm->GetEnv(&env, JNI_VERSION_1_8) == JNI_OK;
}

void attach(JavaVM* vm) {
    void* env = nullptr;
    ASSERT_EQ(vm->AttachCurrentThread(&env, nullptr), JNI_OK);
}

/// Attaches and detaches the thread before, between and after operations, and lets operations find it either way.
void attachAroundCalls(JavaVM* vm, const IProvider& provider, const fs::path& data, const std::u16string& name) {
    expectWorks(provider, data, name);
    for (int time = 0; time < 3; ++time) {
        attach(vm);
        const auto stream = openNew(provider, data, name);
        EXPECT_TRUE(isAttached(vm));
        ASSERT_EQ(vm->DetachCurrentThread(), JNI_OK);
        EXPECT_EQ(stream->write("x", 1), 1);
        EXPECT_FALSE(isAttached(vm));
        attach(vm);
        stream->close();
        ASSERT_EQ(vm->DetachCurrentThread(), JNI_OK);
        provider.removeFile(in(data, name));
    }
    EXPECT_FALSE(isAttached(vm));
}

TEST(ThreadsTest, HostAttachesAndDetachesItsThreadsAroundCalls) {
    expectSilentExit([](const fs::path& data) {
        const auto jvm = startMachine();
        const auto provider = makeProvider(jvm);
        std::vector<std::jthread> threads;
        for (char16_t name = u'a'; name < u'e'; ++name) {
            threads.emplace_back(
                [&, name] { attachAroundCalls(jvm->getJavaVM(), *provider, data, std::u16string(1, name)); });
        }
    });
}

TEST(ThreadsTest, ThreadThatEndsAttachedHoldsNothingUp) {
    expectSilentExit([](const fs::path& data) {
        const auto jvm = startMachine();
        const auto provider = makeProvider(jvm);
        std::thread([&] {
            attach(jvm->getJavaVM());
            expectWorks(*provider, data, u"a");
        }).join();
        expectWorks(*provider, data, u"b");
    });
}

/// What a thread with that much stack gets: nothing, or the error's text.
std::string workOn(std::size_t stack, const IProvider& provider, const fs::path& data) {
    std::string error;
    ::test::runWithStack(stack, [&] {
        try {
            expectWorks(provider, data, u"small");
        } catch (const std::runtime_error& refusal) {
            error = refusal.what();
        }
    });
    return error;
}

/// What threads get, one after the other; the host goes on and works after each.
std::vector<std::string> workTimeAndAgainOn(std::size_t stack, const fs::path& data) {
    const auto jvm = startMachine();
    const auto provider = makeProvider(jvm);
    std::vector<std::string> errors;
    for (int time = 0; time < 5; ++time) {
        errors.push_back(workOn(stack, *provider, data));
        fs::remove(data / "small");
        expectWorks(*provider, data, u"large");
    }
    return errors;
}

// Java keeps some 96 KiB of each stack for itself; how much a back end needs beside it is seen here, where it is new to
// the machine: its classes are yet to be loaded. The limits lie up to 8 KiB higher on one processor than on another.
class StackTest : public ::testing::TestWithParam<std::size_t> {
protected:
    static std::size_t stack() { return GetParam() * KiB; }
};

constexpr const char* Refusal = "The Java virtual machine refuses the thread";

class TinyStackTest : public StackTest {};

// No stack for the machine to refuse on.
TEST_P(TinyStackTest, OverflowEndsTheProcess) {
    const HostEnd end = endOf([](const fs::path& data) {
        const rlimit noCore{};
        setrlimit(RLIMIT_CORE, &noCore);
        workTimeAndAgainOn(stack(), data);
    });
    EXPECT_TRUE(WIFSIGNALED(end.status));
    EXPECT_EQ(WTERMSIG(end.status), SIGSEGV);
    EXPECT_EQ(end.output, "");
}

INSTANTIATE_TEST_SUITE_P(KiB, TinyStackTest, ::testing::Values(16, 24), ::testing::PrintToStringParamName());

class RefusedStackTest : public StackTest {};

TEST_P(RefusedStackTest, OperationFailsWithAnError) {
    expectSilentExit(
        [](const fs::path& data) { EXPECT_THAT(workTimeAndAgainOn(stack(), data), Each(StartsWith(Refusal))); });
}

INSTANTIATE_TEST_SUITE_P(KiB, RefusedStackTest, ::testing::Values(40, 64, 100), ::testing::PrintToStringParamName());

class LimitStackTest : public StackTest {};

// What one processor's machine refuses, another's takes.
TEST_P(LimitStackTest, OperationWorksOrFailsWithAnError) {
    expectSilentExit([](const fs::path& data) {
        EXPECT_THAT(workTimeAndAgainOn(stack(), data),
                    Each(AnyOf("", StartsWith(Refusal), HasSubstr("java.lang.StackOverflowError"))));
    });
}

INSTANTIATE_TEST_SUITE_P(KiB, LimitStackTest, ::testing::Values(104), ::testing::PrintToStringParamName());

class ScarceStackTest : public StackTest {};

TEST_P(ScarceStackTest, OperationWorksOrFailsWithAnError) {
    expectSilentExit([](const fs::path& data) {
        EXPECT_THAT(workTimeAndAgainOn(stack(), data), Each(AnyOf("", HasSubstr("java.lang.StackOverflowError"))));
    });
}

INSTANTIATE_TEST_SUITE_P(KiB, ScarceStackTest, ::testing::Values(112, 120), ::testing::PrintToStringParamName());

class EnoughStackTest : public StackTest {};

TEST_P(EnoughStackTest, OperationWorks) {
    expectSilentExit([](const fs::path& data) { EXPECT_THAT(workTimeAndAgainOn(stack(), data), Each("")); });
}

INSTANTIATE_TEST_SUITE_P(KiB, EnoughStackTest, ::testing::Values(128, 256), ::testing::PrintToStringParamName());

}  // namespace
}  // namespace storage::javaprovider::test
