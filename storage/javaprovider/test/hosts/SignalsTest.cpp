// Hosts with signal handlers of their own, installed before the machine starts.
#include <gtest/gtest.h>
#include <jni.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>

#include "hosts/HostProcess.h"
#include "storage/jvm/JVMWrapper.h"

namespace storage::javaprovider::test {
namespace {

namespace fs = std::filesystem;

constexpr int CaughtFault = 42;

std::array<std::atomic<int>, 65> caught;

void count(int signal) { ++caught.at(static_cast<std::size_t>(signal)); }

void endByFault(int /*signal*/) { _exit(CaughtFault); }

void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    ASSERT_EQ(sigaction(signal, &action, nullptr), 0);
}

int timesCaught(int signal) { return caught.at(static_cast<std::size_t>(signal)); }

/// A NullPointerException that the machine makes out of a fault, as it does for a check that the program does not have.
void dereferenceNullInJava(JNIEnv* env) {
    jclass string = env->FindClass("java/lang/String");
    jmethodID concat = env->GetMethodID(string, "concat", "(Ljava/lang/String;)Ljava/lang/String;");
    env->CallObjectMethod(env->NewStringUTF("x"), concat, nullptr);
    ASSERT_EQ(env->ExceptionCheck(), JNI_TRUE);
    env->ExceptionClear();
}

TEST(SignalsTest, HostsHandlersForTheEndAreStillItsOwn) {
    expectSilentExit([](const fs::path& data) {
        handle(SIGTERM, count);
        handle(SIGINT, count);
        const auto jvm = startMachine();
        const auto provider = makeProvider(jvm);
        expectWorks(*provider, data, u"a");
        raise(SIGTERM);
        raise(SIGINT);
        kill(getpid(), SIGTERM);
        EXPECT_EQ(timesCaught(SIGTERM), 2);
        EXPECT_EQ(timesCaught(SIGINT), 1);
        expectWorks(*provider, data, u"b");
    });
}

TEST(SignalsTest, HostWithoutHandlersIsEndedByTheSignal) {
    const HostEnd end = endOf([](const fs::path& data) {
        const auto jvm = startMachine();
        const auto provider = makeProvider(jvm);
        expectWorks(*provider, data, u"a");
        raise(SIGTERM);
    });
    EXPECT_TRUE(WIFSIGNALED(end.status));
    EXPECT_EQ(WTERMSIG(end.status), SIGTERM);
    EXPECT_EQ(end.output, "");
    EXPECT_EQ(end.files, std::vector<std::string>());
}

TEST(SignalsTest, HostsHandlerForFaultsIsNotCalledForThoseOfJava) {
    expectSilentExit([](const fs::path& data) {
        handle(SIGSEGV, count);
        const auto jvm = startMachine();
        const auto provider = makeProvider(jvm);
        storage::jvm::JVMWrapper wrapper(jvm->getJavaVM());
        for (int time = 0; time < 100; ++time) {
            dereferenceNullInJava(wrapper.getEnv());
        }
        expectWorks(*provider, data, u"a");
        EXPECT_EQ(timesCaught(SIGSEGV), 0);
    });
}

TEST(SignalsTest, HostsHandlerForFaultsIsCalledForItsOwn) {
    expectSilentExit(
        [](const fs::path& data) {
            handle(SIGSEGV, endByFault);
            const auto jvm = startMachine();
            const auto provider = makeProvider(jvm);
            expectWorks(*provider, data, u"a");
            volatile int* volatile nowhere = nullptr;
            *nowhere = 1;
        },
        CaughtFault);
}

}  // namespace
}  // namespace storage::javaprovider::test
