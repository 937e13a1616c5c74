// Hosts that see to their threads themselves, and hosts with little stack.
#include <gtest/gtest.h>
#include <jni.h>

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

class SmallStackTest : public ::testing::TestWithParam<std::size_t> {};

// Java keeps some 96 KiB of each stack for itself: less than that has no room for it, and a little more may not be
// enough for the back end. That is an error, and nothing worse.
TEST_P(SmallStackTest, OperationWorksOrFailsWithAnError) {
    expectSilentExit([](const fs::path& data) {
        const auto jvm = startMachine();
        const auto provider = makeProvider(jvm);
        for (int time = 0; time < 5; ++time) {
            const std::string error = workOn(GetParam() * KiB, *provider, data);
            EXPECT_TRUE(error.empty() || error.starts_with("The Java virtual machine refuses the thread") ||
                        error.find("java.lang.StackOverflowError") != std::string::npos)
                << error;
        }
        fs::remove(data / "small");
        expectWorks(*provider, data, u"large");
    });
}

INSTANTIATE_TEST_SUITE_P(KiB, SmallStackTest, ::testing::Values(32, 64, 104, 128), ::testing::PrintToStringParamName());

TEST(ThreadsTest, QuarterOfAMebibyteOfStackIsEnough) {
    expectSilentExit([](const fs::path& data) {
        const auto jvm = startMachine();
        const auto provider = makeProvider(jvm);
        EXPECT_EQ(workOn(256 * KiB, *provider, data), "");
    });
}

}  // namespace
}  // namespace storage::javaprovider::test
