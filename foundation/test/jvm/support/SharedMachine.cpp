#include "SharedMachine.h"

#include "JavaCalls.h"

namespace test {

std::shared_ptr<storage::jvm::EmbeddedJVM> SharedMachine::s_jvm;

void SharedMachine::SetUpTestSuite() {
    storage::jvm::EmbeddedJVMOptions options;
    options.maxHeapMiB = HeapMiB;
    options.jvmOptions = {"-Xcheck:jni"};
    s_jvm = storage::jvm::EmbeddedJVM::start(options);
}

void SharedMachine::SetUp() { ASSERT_FALSE(isAttached(vm())); }

void SharedMachine::TearDown() { EXPECT_FALSE(isAttached(vm())); }

HostAttachment::HostAttachment(JavaVM* vm) : m_vm(vm), m_env(nullptr) {
    void* env = nullptr;
    EXPECT_EQ(vm->AttachCurrentThread(&env, nullptr), JNI_OK);
    m_env = static_cast<JNIEnv*>(env);
}

HostAttachment::~HostAttachment() { EXPECT_EQ(m_vm->DetachCurrentThread(), JNI_OK); }

}  // namespace test
