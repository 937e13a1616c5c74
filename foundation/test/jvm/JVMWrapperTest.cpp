#include "storage/jvm/JVMWrapper.h"

#include <gmock/gmock.h>

#include <optional>
#include <thread>

#include "CapturedOutput.h"
#include "JavaCalls.h"
#include "SharedMachine.h"
#include "SmallThread.h"

namespace {

using storage::jvm::JVMWrapper;
using test::HostAttachment;

class JVMWrapperTest : public test::SharedMachine {
protected:
    /// A new object that only `env`'s present frame holds, seen through a weak reference.
    static jweak objectInFrame(JNIEnv* env) {
        jclass const type = env->FindClass("java/lang/Object");
        jobject const object = env->NewObject(type, env->GetMethodID(type, "<init>", "()V"));
        return env->NewWeakGlobalRef(object);
    }
};

TEST_F(JVMWrapperTest, UnattachedThreadIsAttachedForTheScope) {
    {
        JVMWrapper wrapper(vm());
        EXPECT_EQ(wrapper.getEnv(), test::envOf(vm()));
        EXPECT_EQ(test::systemProperty(wrapper.getEnv(), "file.separator"), "/");
    }
    EXPECT_FALSE(test::isAttached(vm()));
}

TEST_F(JVMWrapperTest, ThreadThatTheHostAttachedStaysAttached) {
    const HostAttachment attachment(vm());
    {
        JVMWrapper wrapper(vm());
        EXPECT_EQ(wrapper.getEnv(), attachment.env());
    }
    EXPECT_EQ(test::envOf(vm()), attachment.env());
}

TEST_F(JVMWrapperTest, EachThreadHasItsOwnEnvironment) {
    JVMWrapper here(vm());
    JNIEnv* there = nullptr;
    std::thread([&] {
        JVMWrapper wrapper(vm());
        there = wrapper.getEnv();
    }).join();
    EXPECT_NE(there, nullptr);
    EXPECT_NE(there, here.getEnv());
}

TEST_F(JVMWrapperTest, FrameReleasesReferencesOnAThreadThatStaysAttached) {
    const HostAttachment attachment(vm());
    std::optional<JVMWrapper> wrapper(vm());
    jweak const left = objectInFrame(attachment.env());
    wrapper.reset();
    EXPECT_TRUE(test::isCollected(attachment.env(), left));
    attachment.env()->DeleteWeakGlobalRef(left);
}

TEST_F(JVMWrapperTest, ReferencesOutsideTheFrameAreKept) {
    const HostAttachment attachment(vm());
    jweak const outside = objectInFrame(attachment.env());
    std::optional<JVMWrapper> wrapper(vm());
    jweak const inside = objectInFrame(attachment.env());
    wrapper.reset();
    // Once the object of the frame has been collected, the other one would have been as well.
    ASSERT_TRUE(test::isCollected(attachment.env(), inside));
    EXPECT_FALSE(attachment.env()->IsSameObject(outside, nullptr));
    attachment.env()->DeleteWeakGlobalRef(outside);
    attachment.env()->DeleteWeakGlobalRef(inside);
}

TEST_F(JVMWrapperTest, OperationsThatLeaveReferencesNeverFillTheHeap) {
    const HostAttachment attachment(vm());
    constexpr jsize Mebibyte = 1024 * 1024;
    for (std::size_t operation = 0; operation < 4 * HeapMiB; ++operation) {
        JVMWrapper wrapper(vm());
        ASSERT_NE(wrapper.getEnv()->NewByteArray(Mebibyte), nullptr) << "operation " << operation;
    }
}

TEST_F(JVMWrapperTest, InnerWrapperLeavesTheOuterOneItsThreadAndItsReferences) {
    JVMWrapper outer(vm());
    JNIEnv* const env = outer.getEnv();
    jstring const text = env->NewStringUTF("kept");
    {
        JVMWrapper inner(vm());
        EXPECT_EQ(inner.getEnv(), env);
    }
    ASSERT_TRUE(test::isAttached(vm()));
    EXPECT_EQ(env->GetObjectRefType(text), JNILocalRefType);
    EXPECT_EQ(env->GetStringLength(text), 4);
}

TEST_F(JVMWrapperTest, InnerWrapperReleasesItsOwnReferencesOnly) {
    JVMWrapper outer(vm());
    jweak left = nullptr;
    {
        JVMWrapper inner(vm());
        left = objectInFrame(inner.getEnv());
    }
    EXPECT_TRUE(test::isCollected(outer.getEnv(), left));
    outer.getEnv()->DeleteWeakGlobalRef(left);
}

TEST_F(JVMWrapperTest, PendingExceptionStaysPendingOnAnAttachedThread) {
    const HostAttachment attachment(vm());
    {
        JVMWrapper wrapper(vm());
        test::throwInJava(wrapper.getEnv(), "for the caller");
    }
    EXPECT_TRUE(attachment.env()->ExceptionCheck());
    attachment.env()->ExceptionClear();
}

TEST_F(JVMWrapperTest, WrapperMadeWhileAnExceptionIsPendingKeepsIt) {
    const HostAttachment attachment(vm());
    const test::CapturedOutput output;
    test::throwInJava(attachment.env(), "for the caller");
    { JVMWrapper wrapper(vm()); }
    EXPECT_TRUE(attachment.env()->ExceptionCheck());
    attachment.env()->ExceptionClear();
    EXPECT_EQ(output.text(), "");
}

TEST_F(JVMWrapperTest, PendingExceptionIsDroppedSilentlyWhenTheThreadIsDetached) {
    const test::CapturedOutput output;
    {
        JVMWrapper wrapper(vm());
        test::throwInJava(wrapper.getEnv(), "for nobody");
    }
    EXPECT_EQ(output.text(), "");
    JVMWrapper next(vm());
    EXPECT_FALSE(next.getEnv()->ExceptionCheck());
}

// Shows that the test above can fail.
TEST_F(JVMWrapperTest, MachinePrintsAnExceptionThatNobodyDrops) {
    const test::CapturedOutput output;
    {
        const HostAttachment attachment(vm());
        test::throwInJava(attachment.env(), "uncaught");
    }
    EXPECT_THAT(output.text(), testing::HasSubstr("uncaught"));
}

TEST_F(JVMWrapperTest, ThreadWhoseStackIsTooSmallForJavaIsRefusedSilently) {
    if (test::StacksAreEnlarged) {
        GTEST_SKIP() << "no thread has so little stack here";
    }
    const test::CapturedOutput output;
    std::string failure;
    test::runWithStack(64 * 1024, [&failure] {
        try {
            JVMWrapper wrapper(vm());
        } catch (const std::runtime_error& error) {
            failure = error.what();
        }
        failure += test::isAttached(vm()) ? ", but attached" : "";
    });
    EXPECT_EQ(failure, "The Java virtual machine refuses the thread: JNI_ERR (-1)");
    EXPECT_EQ(output.text(), "");
}

TEST_F(JVMWrapperTest, ThreadDetachedBehindItsBackIsLeftAlone) {
    JVMWrapper wrapper(vm());
    ASSERT_EQ(vm()->DetachCurrentThread(), JNI_OK);
}

}  // namespace
