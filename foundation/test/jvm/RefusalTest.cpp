#include <gmock/gmock.h>

#include "FakeMachine.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "storage/jvm/JVMWrapper.h"
#include "storage/jvm/ThreadAttachment.h"

namespace {

using foundation::core::except::detail::AnonymousInternalException;
using storage::jvm::JVMWrapper;
using storage::jvm::ThreadAttachment;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// What a virtual machine refuses, and what is undone then.
class RefusalTest : public testing::Test {
protected:
    std::string failureOfWrapper() {
        try {
            JVMWrapper wrapper(machine.vm());
        } catch (const AnonymousInternalException<std::runtime_error>& error) {
            return error.what();
        }
        return "nothing was thrown";
    }

    test::FakeMachine machine;
};

class FakeHandle final : public jvm_interface::JVM {
public:
    explicit FakeHandle(JavaVM* vm) : m_vm(vm) {}
    JavaVM* getJavaVM() override { return m_vm; }

private:
    JavaVM* m_vm;
};

TEST_F(RefusalTest, NoMachineIsAnError) {
    EXPECT_THROW(JVMWrapper(nullptr), AnonymousInternalException<std::runtime_error>);
}

TEST_F(RefusalTest, RefusedThreadIsNamedByItsErrorNumber) {
    machine.getEnvAnswer = JNI_EDETACHED;
    machine.attachAnswer = JNI_ENOMEM;
    EXPECT_THAT(failureOfWrapper(), HasSubstr("JNI_ENOMEM (-4)"));
    EXPECT_THAT(machine.calls(), ElementsAre("AttachCurrentThread"));
}

TEST_F(RefusalTest, UnknownErrorNumberIsNamedAsItIs) {
    machine.getEnvAnswer = JNI_EDETACHED;
    machine.attachAnswer = -77;
    EXPECT_THAT(failureOfWrapper(), HasSubstr("(-77)"));
}

TEST_F(RefusalTest, MachineWithoutTheJniVersionIsNotAttachedTo) {
    machine.getEnvAnswer = JNI_EVERSION;
    EXPECT_THAT(failureOfWrapper(), HasSubstr("JNI_EVERSION (-3)"));
    EXPECT_THAT(machine.calls(), IsEmpty());
}

TEST_F(RefusalTest, ThreadIsDetachedAgainWhenThereIsNoFrame) {
    machine.getEnvAnswer = JNI_EDETACHED;
    machine.frameAnswer = JNI_ENOMEM;
    EXPECT_THROW(JVMWrapper(machine.vm()), AnonymousInternalException<std::bad_alloc>);
    EXPECT_THAT(machine.calls(),
                ElementsAre("AttachCurrentThread", "PushLocalFrame", "ExceptionClear", "DetachCurrentThread"));
}

TEST_F(RefusalTest, AttachedThreadStaysAttachedWhenThereIsNoFrame) {
    machine.frameAnswer = JNI_ENOMEM;
    EXPECT_THROW(JVMWrapper(machine.vm()), AnonymousInternalException<std::bad_alloc>);
    EXPECT_THAT(machine.calls(), ElementsAre("PushLocalFrame", "ExceptionClear"));
    EXPECT_FALSE(machine.exceptionPending);
}

TEST_F(RefusalTest, AttachedThreadCostsNothingButItsFrame) {
    { JVMWrapper wrapper(machine.vm()); }
    EXPECT_THAT(machine.calls(), ElementsAre("PushLocalFrame", "PopLocalFrame"));
}

TEST_F(RefusalTest, FrameIsClosedBeforeTheThreadIsDetached) {
    machine.getEnvAnswer = JNI_EDETACHED;
    { JVMWrapper wrapper(machine.vm()); }
    EXPECT_THAT(machine.calls(),
                ElementsAre("AttachCurrentThread", "PushLocalFrame", "PopLocalFrame", "DetachCurrentThread"));
}

TEST_F(RefusalTest, MachineDestroyedUnderAWrapperIsNotCalledAgain) {
    {
        JVMWrapper wrapper(machine.vm());
        machine.getEnvAnswer = JNI_EDETACHED;
    }
    EXPECT_THAT(machine.calls(), ElementsAre("PushLocalFrame"));
}

TEST_F(RefusalTest, RefusedAttachmentIsNamedByItsErrorNumber) {
    machine.getEnvAnswer = JNI_EDETACHED;
    machine.attachAnswer = JNI_ERR;
    try {
        const ThreadAttachment attachment(std::make_shared<FakeHandle>(machine.vm()));
        FAIL() << "nothing was thrown";
    } catch (const AnonymousInternalException<std::runtime_error>& error) {
        EXPECT_THAT(error.what(), HasSubstr("JNI_ERR (-1)"));
    }
    EXPECT_THAT(machine.calls(), ElementsAre("AttachCurrentThreadAsDaemon"));
}

TEST_F(RefusalTest, MachineWithoutTheJniVersionIsNotAttachedToForAScope) {
    machine.getEnvAnswer = JNI_EVERSION;
    EXPECT_THROW(ThreadAttachment(std::make_shared<FakeHandle>(machine.vm())),
                 AnonymousInternalException<std::runtime_error>);
    EXPECT_THAT(machine.calls(), IsEmpty());
}

}  // namespace
