#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <barrier>
#include <cstdlib>
#include <fstream>
#include <thread>

#include "JavaCalls.h"
#include "OwnProcess.h"
#include "TemporaryFolder.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/JVMWrapper.h"

namespace {

using storage::jvm::EmbeddedJVM;
using storage::jvm::EmbeddedJVMOptions;
using storage::jvm::JVMWrapper;
using test::inOwnProcess;

TEST(StartTest, MachineRunsAndTheCallingThreadIsNotAttached) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        ASSERT_NE(jvm->getJavaVM(), nullptr);
        EXPECT_TRUE(jvm->startedHere());
        EXPECT_EQ(jvm->libjvm().filename(), "libjvm.so");
        EXPECT_TRUE(std::filesystem::exists(jvm->libjvm()));
        EXPECT_FALSE(test::isAttached(jvm->getJavaVM()));
    });
}

TEST(StartTest, ProcessEndsThoughTheHandleWasNeverShutDown) {
    inOwnProcess([] { EXPECT_NE(EmbeddedJVM::start()->getJavaVM(), nullptr); });
}

TEST(StartTest, SecondStartGivesTheSameMachine) {
    inOwnProcess([] {
        const auto first = EmbeddedJVM::start();
        const auto second = EmbeddedJVM::start();
        EXPECT_EQ(first->getJavaVM(), second->getJavaVM());
        EXPECT_TRUE(second->startedHere());
    });
}

TEST(StartTest, HandleThatWasDroppedCanBeHadAgain) {
    inOwnProcess([] {
        JavaVM* const vm = EmbeddedJVM::start()->getJavaVM();
        const auto again = EmbeddedJVM::start();
        EXPECT_EQ(again->getJavaVM(), vm);
        EXPECT_TRUE(again->startedHere());
        again->shutdown();
        EXPECT_THROW(JVMWrapper{vm}, std::runtime_error);
    });
}

TEST(StartTest, ConcurrentStartsGiveTheSameMachine) {
    inOwnProcess([] {
        constexpr std::size_t Threads = 8;
        std::array<JavaVM*, Threads> machines{};
        std::barrier together(static_cast<std::ptrdiff_t>(Threads));
        std::vector<std::thread> threads;
        for (JavaVM*& machine : machines) {
            threads.emplace_back([&machine, &together] {
                together.arrive_and_wait();
                machine = EmbeddedJVM::start()->getJavaVM();
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_NE(machines.front(), nullptr);
        EXPECT_THAT(machines, testing::Each(machines.front()));
    });
}

TEST(StartTest, ThreadThatStartedTheMachineMayEnd) {
    inOwnProcess([] {
        std::shared_ptr<EmbeddedJVM> jvm;
        std::thread([&jvm] { jvm = EmbeddedJVM::start(); }).join();
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_NE(test::systemProperty(wrapper.getEnv(), "java.version"), "<null>");
    });
}

/// Runtime.maxMemory() in MiB.
jlong maxHeapMiB(JNIEnv* env) {
    jclass const type = env->FindClass("java/lang/Runtime");
    jobject const runtime =
        env->CallStaticObjectMethod(type, env->GetStaticMethodID(type, "getRuntime", "()Ljava/lang/Runtime;"));
    return env->CallLongMethod(runtime, env->GetMethodID(type, "maxMemory", "()J")) / (1024 * 1024);
}

TEST(StartTest, HeapIsTheOneStated) {
    inOwnProcess([] {
        setenv("JAVA_TOOL_OPTIONS", "-Xmx32m", 1);
        EmbeddedJVMOptions options;
        options.maxHeapMiB = 64;
        const auto jvm = EmbeddedJVM::start(options);
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_THAT(maxHeapMiB(wrapper.getEnv()), testing::AllOf(testing::Gt(48), testing::Le(64)));
    });
}

TEST(StartTest, HeapOfZeroLeavesTheSizeToJava) {
    inOwnProcess([] {
        setenv("JAVA_TOOL_OPTIONS", "-Xmx32m", 1);
        EmbeddedJVMOptions options;
        options.maxHeapMiB = 0;
        const auto jvm = EmbeddedJVM::start(options);
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_THAT(maxHeapMiB(wrapper.getEnv()), testing::AllOf(testing::Gt(0), testing::Le(32)));
    });
}

TEST(StartTest, HostsOptionsWinOverTheDefaults) {
    inOwnProcess([] {
        EmbeddedJVMOptions options;
        options.jvmOptions = {"-Dtest.given=yes", "-Djava.class.path=/elsewhere"};
        const auto jvm = EmbeddedJVM::start(options);
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_EQ(test::systemProperty(wrapper.getEnv(), "test.given"), "yes");
        EXPECT_EQ(test::systemProperty(wrapper.getEnv(), "java.class.path"), "/elsewhere");
    });
}

TEST(StartTest, ClassPathIsSearched) {
    inOwnProcess([] {
        const test::TemporaryFolder first;
        const test::TemporaryFolder second;
        std::ofstream(second.path() / "resource.txt") << "here";
        EmbeddedJVMOptions options;
        options.classPath = {first.path(), second.path()};
        const auto jvm = EmbeddedJVM::start(options);
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_TRUE(test::isOnClassPath(wrapper.getEnv(), "resource.txt"));
    });
}

TEST(StartTest, EmptyClassPathIsNotTheWorkingFolder) {
    inOwnProcess([] {
        const test::TemporaryFolder folder;
        std::ofstream(folder.path() / "resource.txt") << "here";
        std::filesystem::current_path(folder.path());
        const auto jvm = EmbeddedJVM::start();
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_FALSE(test::isOnClassPath(wrapper.getEnv(), "resource.txt"));
        std::filesystem::current_path("/");
    });
}

TEST(StartTest, WorkingFolderMayBeRemoved) {
    inOwnProcess([] {
        {
            const test::TemporaryFolder folder;
            std::filesystem::current_path(folder.path());
        }
        const auto jvm = EmbeddedJVM::start();
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_EQ(test::systemProperty(wrapper.getEnv(), "user.dir"), "/");
        const test::TemporaryFolder folder;
        EXPECT_EQ(test::createFile(wrapper.getEnv(), (folder.path() / "file").u16string()), "");
        std::error_code error;
        static_cast<void>(std::filesystem::current_path(error));
        EXPECT_TRUE(error) << "the host's thread was moved";
    });
}

TEST(StartTest, SignalHandlersStayTheHosts) {
    inOwnProcess([] {
        constexpr std::array signals{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGUSR1, SIGCHLD, SIGALRM};
        const auto handler = [](int) {};
        for (const int number : signals) {
            signal(number, handler);
        }
        const auto jvm = EmbeddedJVM::start();
        for (const int number : signals) {
            struct sigaction now {};
            sigaction(number, nullptr, &now);
            EXPECT_EQ(now.sa_handler, static_cast<void (*)(int)>(handler)) << "signal " << number;
        }
    });
}

TEST(StartTest, NothingIsLeftInTheTemporaryFolder) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        const std::string process = std::to_string(getpid());
        EXPECT_FALSE(std::filesystem::exists("/tmp/.java_pid" + process));
        for (const auto& entry : std::filesystem::directory_iterator("/tmp")) {
            const bool statistics = entry.path().filename().string().starts_with("hsperfdata_");
            EXPECT_FALSE(statistics && std::filesystem::exists(entry.path() / process)) << entry.path();
        }
    });
}

TEST(StartTest, JavaMayEndTheProcess) {
    const int status = test::waitStatusOf([] {
        const auto jvm = EmbeddedJVM::start();
        JVMWrapper wrapper(jvm->getJavaVM());
        jclass const system = wrapper.getEnv()->FindClass("java/lang/System");
        wrapper.getEnv()->CallStaticVoidMethod(system, wrapper.getEnv()->GetStaticMethodID(system, "exit", "(I)V"), 42);
        ADD_FAILURE() << "System.exit() came back";
    });
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 42);
}

}  // namespace
