#include <gmock/gmock.h>

#include <optional>
#include <thread>

#include "JavaCalls.h"
#include "OwnProcess.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/JVMWrapper.h"
#include "storage/jvm/ThreadAttachment.h"

#ifndef __has_feature
#define __has_feature(feature) 0  // NOLINT(bugprone-reserved-identifier)
#endif

namespace {

using storage::jvm::EmbeddedJVM;
using storage::jvm::JVMWrapper;
using storage::jvm::ThreadAttachment;
using test::inOwnProcess;

TEST(ForkTest, ChildSeesNoMachineAndTheParentKeepsIt) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        inOwnProcess([&jvm] { EXPECT_EQ(jvm->getJavaVM(), nullptr); });
        ASSERT_NE(jvm->getJavaVM(), nullptr);
        const JVMWrapper wrapper(jvm->getJavaVM());
    });
}

TEST(ForkTest, GrandchildSeesNoMachine) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        inOwnProcess([&jvm] { inOwnProcess([&jvm] { EXPECT_EQ(jvm->getJavaVM(), nullptr); }); });
    });
}

TEST(ForkTest, ChildCannotStartAMachine) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        inOwnProcess([] {
            try {
                static_cast<void>(EmbeddedJVM::start());
                FAIL() << "it started";
            } catch (const std::runtime_error& error) {
                EXPECT_THAT(error.what(), testing::HasSubstr("forked"));
            }
        });
    });
}

TEST(ForkTest, ChildOfARefusedStartHasItsOwnMachine) {
    inOwnProcess([] {
        storage::jvm::EmbeddedJVMOptions refused;
        refused.jvmOptions = {"-nonsense"};
        EXPECT_THROW(static_cast<void>(EmbeddedJVM::start(refused)), std::runtime_error);
        inOwnProcess([] { EXPECT_NE(EmbeddedJVM::start()->getJavaVM(), nullptr); });
        EXPECT_NE(EmbeddedJVM::start()->getJavaVM(), nullptr);
        inOwnProcess([] { EXPECT_THROW(static_cast<void>(EmbeddedJVM::start()), std::runtime_error); });
    });
}

TEST(ForkTest, ChildOfAStartThatFailedHalfWaySaysSo) {
    inOwnProcess([] {
        storage::jvm::EmbeddedJVMOptions failing;
        failing.jvmOptions = {"-Xmx99999999g"};
        EXPECT_THROW(static_cast<void>(EmbeddedJVM::start(failing)), std::runtime_error);
        inOwnProcess([] {
            try {
                static_cast<void>(EmbeddedJVM::start());
                FAIL() << "it started";
            } catch (const std::runtime_error& error) {
                EXPECT_THAT(error.what(), testing::HasSubstr("after one that failed halfway"));
            }
        });
    });
}

// A fork in the midst of a start leaves the child a machine half-made and its locks taken.
TEST(ForkTest, ChildOfAProcessThatStartsAMachineHasNone) {
#if __has_feature(thread_sanitizer)
    GTEST_SKIP() << "a child that is forked before the start would begin threads, which the sanitizer forbids";
#endif
    inOwnProcess([] {
        std::thread starting([] { static_cast<void>(EmbeddedJVM::start()); });
        for (int i = 0; i < 5; ++i) {
            inOwnProcess([] {
                try {
                    static_cast<void>(EmbeddedJVM::start());
                } catch (const std::runtime_error& error) {
                    EXPECT_THAT(error.what(), testing::HasSubstr("forked"));
                }
            });
        }
        starting.join();
        EXPECT_NE(EmbeddedJVM::start()->getJavaVM(), nullptr);
    });
}

TEST(ForkTest, ShutdownInTheChildDoesNothing) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        inOwnProcess([&jvm] { jvm->shutdown(); });
        EXPECT_NE(jvm->getJavaVM(), nullptr);
    });
}

// What is left of the machine in the child is memory that no thread of it works on: it still takes the thread for
// attached as long as nobody calls it.
TEST(ForkTest, WrapperOfTheForkingThreadDoesNotCallTheMachineInTheChild) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        JavaVM* const vm = jvm->getJavaVM();
        std::optional<JVMWrapper> wrapper(vm);
        inOwnProcess([&wrapper, vm] {
            wrapper.reset();
            EXPECT_TRUE(test::isAttached(vm));
        });
        EXPECT_NE(test::systemProperty(wrapper->getEnv(), "java.version"), "<null>");
    });
}

TEST(ForkTest, AttachmentOfTheForkingThreadDoesNotCallTheMachineInTheChild) {
    inOwnProcess([] {
        const auto jvm = EmbeddedJVM::start();
        JavaVM* const vm = jvm->getJavaVM();
        std::optional<ThreadAttachment> attachment(jvm);
        inOwnProcess([&attachment, vm] {
            attachment.reset();
            EXPECT_TRUE(test::isAttached(vm));
        });
        EXPECT_NE(test::systemProperty(test::envOf(vm), "java.version"), "<null>");
    });
}

TEST(ForkTest, ProcessForkedBeforeTheStartHasItsOwnMachine) {
    inOwnProcess([] {
        inOwnProcess([] { EXPECT_NE(EmbeddedJVM::start()->getJavaVM(), nullptr); });
        EXPECT_NE(EmbeddedJVM::start()->getJavaVM(), nullptr);
    });
}

}  // namespace
