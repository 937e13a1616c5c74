#include "FakeMachine.h"

namespace test {

// The reserved first slots of the tables belong to the machine: here they lead back to the object.
FakeMachine::FakeMachine() {
    m_machineTable.reserved0 = this;
    m_machineTable.GetEnv = getEnv;
    m_machineTable.AttachCurrentThread = attach;
    m_machineTable.AttachCurrentThreadAsDaemon = attachAsDaemon;
    m_machineTable.DetachCurrentThread = detach;
    m_envTable.reserved0 = this;
    m_envTable.PushLocalFrame = pushLocalFrame;
    m_envTable.PopLocalFrame = popLocalFrame;
    m_envTable.ExceptionCheck = exceptionCheck;
    m_envTable.ExceptionClear = exceptionClear;
    m_vm.functions = &m_machineTable;
    m_env.functions = &m_envTable;
}

FakeMachine& FakeMachine::of(JavaVM* vm) { return *static_cast<FakeMachine*>(vm->functions->reserved0); }
FakeMachine& FakeMachine::of(JNIEnv* env) { return *static_cast<FakeMachine*>(env->functions->reserved0); }

jint FakeMachine::getEnv(JavaVM* vm, void** env, jint) {
    FakeMachine& machine = of(vm);
    *env = machine.getEnvAnswer == JNI_OK ? &machine.m_env : nullptr;
    return machine.getEnvAnswer;
}

jint FakeMachine::answerAttachment(void** env, const char* name) {
    m_calls.emplace_back(name);
    if (attachAnswer == JNI_OK) {
        *env = &m_env;
        getEnvAnswer = JNI_OK;
    }
    return attachAnswer;
}

jint FakeMachine::attach(JavaVM* vm, void** env, void*) { return of(vm).answerAttachment(env, "AttachCurrentThread"); }

jint FakeMachine::attachAsDaemon(JavaVM* vm, void** env, void*) {
    return of(vm).answerAttachment(env, "AttachCurrentThreadAsDaemon");
}

jint FakeMachine::detach(JavaVM* vm) {
    of(vm).m_calls.emplace_back("DetachCurrentThread");
    of(vm).getEnvAnswer = JNI_EDETACHED;
    return JNI_OK;
}

jint FakeMachine::pushLocalFrame(JNIEnv* env, jint) {
    FakeMachine& machine = of(env);
    machine.m_calls.emplace_back("PushLocalFrame");
    machine.exceptionPending = machine.exceptionPending || machine.frameAnswer != JNI_OK;
    return machine.frameAnswer;
}

jobject FakeMachine::popLocalFrame(JNIEnv* env, jobject) {
    of(env).m_calls.emplace_back("PopLocalFrame");
    return nullptr;
}

jboolean FakeMachine::exceptionCheck(JNIEnv* env) { return of(env).exceptionPending ? JNI_TRUE : JNI_FALSE; }

void FakeMachine::exceptionClear(JNIEnv* env) {
    of(env).m_calls.emplace_back("ExceptionClear");
    of(env).exceptionPending = false;
}

}  // namespace test
