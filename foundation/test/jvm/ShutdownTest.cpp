#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <latch>
#include <optional>
#include <thread>

#include "CapturedOutput.h"
#include "JavaCalls.h"
#include "OwnProcess.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/JVMWrapper.h"
#include "storage/jvm/ThreadAttachment.h"

namespace {

using foundation::core::except::detail::AnonymousInternalException;
using storage::jvm::EmbeddedJVM;
using storage::jvm::JVMWrapper;
using storage::jvm::ThreadAttachment;
using test::inOwnProcess;
using testing::HasSubstr;

TEST(ShutdownTest, HandleIsEmptyAfterwards) {
    inOwnProcess([] {
        const test::CapturedOutput output;
        const auto jvm = EmbeddedJVM::start();
        jvm->shutdown();
        EXPECT_EQ(jvm->getJavaVM(), nullptr);
        EXPECT_EQ(output.text(), "");
    });
}

TEST(ShutdownTest, SecondCallIsHarmless) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        jvm->shutdown();
        jvm->shutdown();
        EXPECT_EQ(jvm->getJavaVM(), nullptr);
    });
}

TEST(ShutdownTest, ConcurrentCallsEndTheMachineOnce) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        std::thread other([&jvm] { jvm->shutdown(); });
        jvm->shutdown();
        other.join();
        EXPECT_EQ(jvm->getJavaVM(), nullptr);
    });
}

TEST(ShutdownTest, NoMachineCanBeStartedAfterwards) {
    inOwnProcess([] {
        EmbeddedJVM::start()->shutdown();
        try {
            static_cast<void>(EmbeddedJVM::start());
            FAIL() << "it started";
        } catch (const AnonymousInternalException<std::runtime_error>& error) {
            EXPECT_THAT(error.what(), HasSubstr("was shut down"));
        }
    });
}

TEST(ShutdownTest, ThreadIsRefusedAfterwardsAndNothingStaysAttached) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        JavaVM* const vm = jvm->getJavaVM();
        jvm->shutdown();
        try {
            JVMWrapper wrapper(vm);
            FAIL() << "the thread was attached";
        } catch (const AnonymousInternalException<std::runtime_error>& error) {
            EXPECT_THAT(error.what(), HasSubstr("refuses the thread"));
        }
        EXPECT_FALSE(test::isAttached(vm));
        EXPECT_THROW(ThreadAttachment{jvm}, AnonymousInternalException<std::runtime_error>);
    });
}

TEST(ShutdownTest, GuardsOfTheCallingThreadMayOutliveTheMachine) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        const ThreadAttachment attachment(jvm);
        const JVMWrapper wrapper(jvm->getJavaVM());
        jvm->shutdown();
        EXPECT_EQ(jvm->getJavaVM(), nullptr);
    });
}

TEST(ShutdownTest, GuardsOfAnotherThreadMayOutliveTheMachine) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        std::latch guarded(1);
        std::latch ended(1);
        std::thread worker([&] {
            const ThreadAttachment attachment(jvm);
            const JVMWrapper wrapper(jvm->getJavaVM());
            guarded.count_down();
            ended.wait();
        });
        guarded.wait();
        jvm->shutdown();
        ended.count_down();
        worker.join();
    });
}

TEST(ShutdownTest, WorkersThatAreAttachedDoNotHoldItUp) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        const ThreadAttachment attachment(jvm);
        auto ended = std::async(std::launch::async, [&jvm] { jvm->shutdown(); });
        EXPECT_EQ(ended.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    });
}

TEST(ShutdownTest, ThreadsOfJavaAreWaitedFor) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        JavaVM* const vm = jvm->getJavaVM();
        const ThreadAttachment attachment(jvm);
        JNIEnv* const env = test::envOf(vm);
        jclass const type = env->FindClass("java/util/Timer");
        // Its thread is no daemon, and runs until the timer is cancelled.
        jobject const timer = env->NewObject(type, env->GetMethodID(type, "<init>", "()V"));
        std::atomic<bool> cancelled{false};
        auto afterCancel = std::async(std::launch::async, [&] {
            jvm->shutdown();
            return cancelled.load();
        });
        while (jvm->getJavaVM() != nullptr) {
            std::this_thread::yield();
        }
        cancelled = true;
        env->CallVoidMethod(timer, env->GetMethodID(type, "cancel", "()V"));
        EXPECT_TRUE(afterCancel.get());
    });
}

std::shared_ptr<EmbeddedJVM> calledBackJvm;
std::string calledBackFailure;

jint JNICALL shutDownFromJava(JNIEnv*, jobject) {
    try {
        calledBackJvm->shutdown();
    } catch (const AnonymousInternalException<std::runtime_error>& error) {
        calledBackFailure = error.what();
    }
    return 7;
}

TEST(ShutdownTest, MethodThatJavaCallsCannotEndIt) {
    inOwnProcess([] {
        calledBackJvm = EmbeddedJVM::start();
        JVMWrapper wrapper(calledBackJvm->getJavaVM());
        JNIEnv* const env = wrapper.getEnv();
        jclass const type = env->FindClass("java/lang/Runtime");
        const JNINativeMethod native{const_cast<char*>("availableProcessors"), const_cast<char*>("()I"),
                                     reinterpret_cast<void*>(shutDownFromJava)};
        ASSERT_EQ(env->RegisterNatives(type, &native, 1), JNI_OK);
        jobject const runtime =
            env->CallStaticObjectMethod(type, env->GetStaticMethodID(type, "getRuntime", "()Ljava/lang/Runtime;"));
        EXPECT_EQ(env->CallIntMethod(runtime, env->GetMethodID(type, "availableProcessors", "()I")), 7);
        EXPECT_THAT(calledBackFailure, HasSubstr("method that Java calls"));
        EXPECT_NE(calledBackJvm->getJavaVM(), nullptr);
        EXPECT_NE(test::systemProperty(env, "java.version"), "<null>");
    });
}

}  // namespace
