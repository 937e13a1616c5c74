#include "soak/Sample.h"

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

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

/// Over all arenas; what the allocator keeps for later is not in it.
long nativeKiB() {
    const auto use = mallinfo2();
    return static_cast<long>((use.uordblks + use.hblkhd) / 1024);
}

long entriesOf(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<long>(std::distance(begin(entries), end(entries)));
}

/// What the walk over the roots has met.
struct Roots {
    std::vector<jmethodID>
        localsOf;  ///< for each local reference the method in whose frame it is; null outside of Java
    long globals = 0;
};

/// The machine walks on a thread of its own and waits for it in ways that ThreadSanitizer does not see.
std::mutex walk;

/// Called for each root of the machine; answering zero keeps it from going on to what the root refers to.
jint JNICALL countRoot(jvmtiHeapReferenceKind kind, const jvmtiHeapReferenceInfo* info, jlong /*classTag*/,
                       jlong /*referrerClassTag*/, jlong /*size*/, jlong* /*tag*/, jlong* /*referrerTag*/,
                       jint /*length*/, void* data) {
    const std::lock_guard lock(walk);
    auto& roots = *static_cast<Roots*>(data);
    if (kind == JVMTI_HEAP_REFERENCE_JNI_LOCAL) {
        roots.localsOf.push_back(info->jni_local.method);
    } else if (kind == JVMTI_HEAP_REFERENCE_JNI_GLOBAL) {
        ++roots.globals;
    }
    return 0;
}

/// HotSpot also reports constants of compiled Java methods on a stack as local references.
bool isReference(jvmtiEnv* jvmti, jmethodID method) {
    jboolean native = JNI_TRUE;
    if (method != nullptr) {
        check(jvmti->IsMethodNative(method, &native), "cannot tell a native method");
    }
    return native == JNI_TRUE;
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
    return out << "resident " << sample.residentKiB << " KiB, native " << sample.nativeKiB << " KiB, references "
               << sample.localReferences << " local " << sample.globalReferences << " global " << sample.weakReferences
               << " weak, threads " << sample.javaThreads << " Java " << sample.tasks << " system, " << sample.openFiles
               << " open files";
}

Sampler::Sampler(JavaVM* vm) : m_vm(vm) {
    void* jvmti = nullptr;
    check(vm->GetEnv(&jvmti, JVMTI_VERSION_11), "the machine has no tool interface");
    m_jvmti = static_cast<jvmtiEnv*>(jvmti);
    jvmtiCapabilities wanted{};
    wanted.can_tag_objects = 1;
    check(m_jvmti->AddCapabilities(&wanted), "the machine cannot walk its references");
    m_weakReferences.emplace(m_jvmti);
}

Sampler::~Sampler() {
    m_weakReferences.reset();
    m_jvmti->DisposeEnvironment();
}

Sample Sampler::take() const {
    Sample sample;
    check(m_jvmti->ForceGarbageCollection(), "cannot collect garbage");
    jvmtiHeapCallbacks callbacks{};
    callbacks.heap_reference_callback = countRoot;
    Roots roots;
    std::unique_lock(walk).unlock();
    check(m_jvmti->FollowReferences(0, nullptr, nullptr, &callbacks, &roots), "cannot walk the references");
    const std::lock_guard lock(walk);
    sample.localReferences =
        std::ranges::count_if(roots.localsOf, [this](jmethodID m) { return isReference(m_jvmti, m); });
    sample.globalReferences = roots.globals;
    sample.weakReferences = WeakReferences::live();
    sample.javaThreads = countJavaThreads(m_vm, m_jvmti);
    sample.tasks = entriesOf("/proc/self/task");
    sample.openFiles = entriesOf("/proc/self/fd");
    sample.nativeKiB = nativeKiB();
    sample.residentKiB = residentKiB();
    return sample;
}

}  // namespace storage::javaprovider::test
