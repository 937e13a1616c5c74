#include "soak/WeakReferences.h"

#include <atomic>
#include <stdexcept>

namespace storage::javaprovider::test {

namespace {

// What the functions in the table use, which have no object. The machine's functions are written before they are in it.
jniNativeInterface machine{};
std::atomic<long> theMade = 0;
std::atomic<long> theDeleted = 0;

jweak JNICALL countNew(JNIEnv* env, jobject object) {
    const jweak made = machine.NewWeakGlobalRef(env, object);
    theMade += made != nullptr ? 1 : 0;
    return made;
}

void JNICALL countDelete(JNIEnv* env, jweak reference) {
    theDeleted += reference != nullptr ? 1 : 0;
    machine.DeleteWeakGlobalRef(env, reference);
}

void check(jvmtiError error) {
    if (error != JVMTI_ERROR_NONE) {
        throw std::runtime_error("cannot count weak references: JVMTI error " + std::to_string(error));
    }
}

}  // namespace

WeakReferences::WeakReferences(jvmtiEnv* jvmti) : m_jvmti(jvmti) {
    jniNativeInterface* table = nullptr;
    check(m_jvmti->GetJNIFunctionTable(&table));
    machine = *table;
    jniNativeInterface counting = machine;
    counting.NewWeakGlobalRef = &countNew;
    counting.DeleteWeakGlobalRef = &countDelete;
    theMade = 0;
    theDeleted = 0;
    check(m_jvmti->Deallocate(reinterpret_cast<unsigned char*>(table)));
    check(m_jvmti->SetJNIFunctionTable(&counting));
}

WeakReferences::~WeakReferences() { m_jvmti->SetJNIFunctionTable(&machine); }

long WeakReferences::live() noexcept { return theMade - theDeleted; }

long WeakReferences::made() noexcept { return theMade; }

}  // namespace storage::javaprovider::test
