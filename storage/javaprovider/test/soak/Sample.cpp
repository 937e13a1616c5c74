#include "soak/Sample.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace storage::javaprovider::test {

namespace {

void check(jint error, const char* what) {
    if (error != 0) {
        throw std::runtime_error(std::string(what) + ": JVMTI error " + std::to_string(error));
    }
}

long residentKiB() {
    std::ifstream in("/proc/self/statm");
    long total = 0;
    long resident = 0;
    in >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

long entriesOf(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<long>(std::distance(begin(entries), end(entries)));
}

/// Called for each root of the machine; answering zero keeps it from going on to what the root refers to.
jint JNICALL countRoot(jvmtiHeapReferenceKind kind, const jvmtiHeapReferenceInfo* /*info*/, jlong /*classTag*/,
                       jlong /*referrerClassTag*/, jlong /*size*/, jlong* /*tag*/, jlong* /*referrerTag*/,
                       jint /*length*/, void* data) {
    auto& sample = *static_cast<Sample*>(data);
    if (kind == JVMTI_HEAP_REFERENCE_JNI_LOCAL) {
        ++sample.localReferences;
    } else if (kind == JVMTI_HEAP_REFERENCE_JNI_GLOBAL) {
        ++sample.globalReferences;
    }
    return 0;
}

long countJavaThreads(JavaVM* vm, jvmtiEnv* jvmti) {
    void* env = nullptr;
    check(vm->GetEnv(&env, JNI_VERSION_1_8), "the thread is not attached");
    jint count = 0;
    jthread* threads = nullptr;
    check(jvmti->GetAllThreads(&count, &threads), "cannot list the threads");
    // Each is a local reference, which the next sample would count.
    std::for_each(threads, threads + count,
                  [env](jthread thread) { static_cast<JNIEnv*>(env)->DeleteLocalRef(thread); });
    check(jvmti->Deallocate(reinterpret_cast<unsigned char*>(threads)), "cannot free the list of threads");
    return count;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const Sample& sample) {
    return out << "resident " << sample.residentKiB << " KiB, references " << sample.localReferences << " local "
               << sample.globalReferences << " global, threads " << sample.javaThreads << " Java " << sample.tasks
               << " system, " << sample.openFiles << " open files";
}

Sampler::Sampler(JavaVM* vm) : m_vm(vm) {
    void* jvmti = nullptr;
    check(vm->GetEnv(&jvmti, JVMTI_VERSION_11), "the machine has no tool interface");
    m_jvmti = static_cast<jvmtiEnv*>(jvmti);
    jvmtiCapabilities wanted{};
    wanted.can_tag_objects = 1;
    check(m_jvmti->AddCapabilities(&wanted), "the machine cannot walk its references");
}

Sampler::~Sampler() { m_jvmti->DisposeEnvironment(); }

Sample Sampler::take() const {
    Sample sample;
    check(m_jvmti->ForceGarbageCollection(), "cannot collect garbage");
    jvmtiHeapCallbacks callbacks{};
    callbacks.heap_reference_callback = countRoot;
    check(m_jvmti->FollowReferences(0, nullptr, nullptr, &callbacks, &sample), "cannot walk the references");
    sample.javaThreads = countJavaThreads(m_vm, m_jvmti);
    sample.tasks = entriesOf("/proc/self/task");
    sample.openFiles = entriesOf("/proc/self/fd");
    sample.residentKiB = residentKiB();
    return sample;
}

}  // namespace storage::javaprovider::test
