#include <gmock/gmock.h>

#include <optional>

#include "JavaCalls.h"
#include "OwnProcess.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/JVMWrapper.h"
#include "storage/jvm/ThreadAttachment.h"

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
