// Hosts with signal handlers of their own, installed before or after the machine starts.
#include <gtest/gtest.h>
#include <jni.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <latch>
#include <thread>

#include "hosts/HostProcess.h"
#include "hosts/KeptInJava.h"
#include "storage/jvm/JVMWrapper.h"
#include "support/Eventually.h"

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
    ASSERT_EQ(env->PushLocalFrame(4), 0);
    jclass string = env->FindClass("java/lang/String");
    jmethodID concat = env->GetMethodID(string, "concat", "(Ljava/lang/String;)Ljava/lang/String;");
    env->CallObjectMethod(env->NewStringUTF("x"), concat, nullptr);
    ASSERT_EQ(env->ExceptionCheck(), JNI_TRUE);
    env->ExceptionClear();
    env->PopLocalFrame(nullptr);
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

/// Sends both signals to the thread and to the process, time and again, each when the one before was caught.
void expectSignalsAreCaught(pthread_t thread) {
    for (int time = 0; time < 200; ++time) {
        const int signal = time % 2 == 0 ? SIGTERM : SIGINT;
        const int before = timesCaught(signal);
        ASSERT_EQ(time % 4 < 2 ? pthread_kill(thread, signal) : kill(getpid(), signal), 0);
        ASSERT_TRUE(eventually([&] { return timesCaught(signal) == before + 1; }));
    }
}

// The handlers are installed without SA_RESTART, so that they interrupt system calls.
TEST(SignalsTest, HandlersInstalledAfterTheStartAreCalledWhileAThreadWorksInJava) {
    expectSilentExit([](const fs::path& data) {
        const auto jvm = startMachine();
        const auto provider = makeProvider(jvm);
        handle(SIGTERM, count);
        handle(SIGINT, count);
        std::latch working(1);
        std::jthread worker([&](const std::stop_token& stop) {
            expectWorks(*provider, data, u"a");
            for (working.count_down(); !stop.stop_requested();) {
                expectWorks(*provider, data, u"a");
            }
        });
        working.wait();
        expectSignalsAreCaught(worker.native_handle());
    });
}

TEST(SignalsTest, HandlersInstalledAfterTheStartAreCalledWhileAThreadIsKeptInJava) {
    expectSilentExit([](const fs::path& /*data*/) {
        const auto jvm = startMachine();
        KeptInJava kept(jvm);
        handle(SIGTERM, count);
        handle(SIGINT, count);
        expectSignalsAreCaught(kept.thread());
        kept.letGo();
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

// The trap: the machine's own handler is replaced. It also shows that what is asked above does make faults.
TEST(SignalsTest, HandlerForFaultsInstalledAfterTheStartIsCalledForThoseOfJava) {
    expectSilentExit(
        [](const fs::path& data) {
            const auto jvm = startMachine();
            const auto provider = makeProvider(jvm);
            expectWorks(*provider, data, u"a");
            handle(SIGSEGV, endByFault);
            storage::jvm::JVMWrapper wrapper(jvm->getJavaVM());
            dereferenceNullInJava(wrapper.getEnv());
        },
        CaughtFault);
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
