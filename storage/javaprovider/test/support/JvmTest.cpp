#include "support/JvmTest.h"

#include <gmock/gmock.h>

#include "support/JavaHelpers.h"
#include "support/JvmEnvironment.h"

namespace storage::javaprovider::test {

void JvmTest::SetUp() {
    m_attached = !isAttached(vm());
    ASSERT_EQ(vm()->AttachCurrentThread(reinterpret_cast<void**>(&m_env), nullptr), JNI_OK);
    const JniRecorder::Unrecorded unrecorded;
    ASSERT_EQ(m_env->PushLocalFrame(64), JNI_OK);
}

void JvmTest::TearDown() {
    EXPECT_TRUE(isAttached(vm())) << "the test's thread was detached";
    if (!isAttached(vm())) {
        return;
    }
    EXPECT_EQ(takePendingException(m_env), "") << "a Java exception is pending after the test";
    if (JniRecorder* recorder = JniRecorder::current()) {
        EXPECT_EQ(recorder->liveLocals(), 0) << ::testing::PrintToString(recorder->leaks());
    }
    const JniRecorder::Unrecorded unrecorded;
    m_env->PopLocalFrame(nullptr);
    if (m_attached) {
        vm()->DetachCurrentThread();
    }
}

const std::shared_ptr<jvm_interface::JVM>& JvmTest::jvm() { return JvmEnvironment::jvm(); }

JavaVM* JvmTest::vm() { return jvm()->getJavaVM(); }

void RecordedJvmTest::TearDown() {
    EXPECT_EQ(recorder.liveChars(), 0) << ::testing::PrintToString(recorder.leaks());
    EXPECT_EQ(recorder.faultsLeft(), 0U) << "a planned failure never happened";
    JvmTest::TearDown();
}

}  // namespace storage::javaprovider::test
