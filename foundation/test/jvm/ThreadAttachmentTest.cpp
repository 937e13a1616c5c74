#include "storage/jvm/ThreadAttachment.h"

#include <gmock/gmock.h>

#include "CapturedOutput.h"
#include "JavaCalls.h"
#include "SharedMachine.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "storage/jvm/JVMWrapper.h"

namespace {

using foundation::core::except::detail::AnonymousInternalException;
using storage::jvm::JVMWrapper;
using storage::jvm::ThreadAttachment;
using test::HostAttachment;

class ThreadAttachmentTest : public test::SharedMachine {};

/// The handle of a host whose virtual machine is gone.
class RemovedMachine final : public jvm_interface::JVM {
public:
    JavaVM* getJavaVM() override { return nullptr; }
};

TEST_F(ThreadAttachmentTest, ThreadIsAttachedForTheScope) {
    {
        const ThreadAttachment attachment(jvm());
        EXPECT_TRUE(test::isAttached(vm()));
    }
    EXPECT_FALSE(test::isAttached(vm()));
}

TEST_F(ThreadAttachmentTest, ThreadIsADaemonSoThatItNeverHoldsUpTheEnd) {
    const ThreadAttachment attachment(jvm());
    JVMWrapper wrapper(vm());
    EXPECT_TRUE(test::isDaemon(wrapper.getEnv()));
}

TEST_F(ThreadAttachmentTest, WrapperLeavesTheThreadAttached) {
    const ThreadAttachment attachment(jvm());
    JNIEnv* const env = test::envOf(vm());
    {
        JVMWrapper wrapper(vm());
        EXPECT_EQ(wrapper.getEnv(), env);
    }
    EXPECT_EQ(test::envOf(vm()), env);
}

TEST_F(ThreadAttachmentTest, ThreadThatTheHostAttachedStaysAttachedAsItIs) {
    const HostAttachment host(vm());
    {
        const ThreadAttachment attachment(jvm());
        EXPECT_FALSE(test::isDaemon(host.env()));
    }
    EXPECT_TRUE(test::isAttached(vm()));
}

TEST_F(ThreadAttachmentTest, InnerScopeLeavesTheOuterOneAttached) {
    const ThreadAttachment outer(jvm());
    { const ThreadAttachment inner(jvm()); }
    EXPECT_TRUE(test::isAttached(vm()));
}

TEST_F(ThreadAttachmentTest, PendingExceptionIsDroppedSilently) {
    const test::CapturedOutput output;
    {
        const ThreadAttachment attachment(jvm());
        test::throwInJava(test::envOf(vm()), "for nobody");
    }
    EXPECT_EQ(output.text(), "");
}

TEST_F(ThreadAttachmentTest, ThreadDetachedBehindItsBackIsLeftAlone) {
    const ThreadAttachment attachment(jvm());
    ASSERT_EQ(vm()->DetachCurrentThread(), JNI_OK);
}

TEST_F(ThreadAttachmentTest, MachineThatIsGoneIsRefused) {
    try {
        const ThreadAttachment attachment(std::make_shared<RemovedMachine>());
        FAIL() << "nothing was thrown";
    } catch (const AnonymousInternalException<std::runtime_error>& error) {
        EXPECT_STREQ(error.what(), "JVM remvoed");
    }
}

TEST_F(ThreadAttachmentTest, EmptyHandleIsRefused) {
    EXPECT_THROW(ThreadAttachment(nullptr), AnonymousInternalException<std::runtime_error>);
}

}  // namespace
