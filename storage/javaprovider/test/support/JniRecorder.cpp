#include "support/JniRecorder.h"

#include <atomic>
#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "support/AttachedScope.h"
#include "support/FunctionTable.h"
#include "support/Recording.h"

namespace storage::javaprovider::test {

namespace {

std::atomic<JniRecorder*> theRecorder = nullptr;

/// One environment for the process: it costs nothing while no recorder lives.
jvmtiEnv* jvmtiOf(JavaVM* vm) {
    static jvmtiEnv* const environment = [vm] {
        void* found = nullptr;
        if (vm->GetEnv(&found, JVMTI_VERSION_11) != JNI_OK) {
            throw std::runtime_error("the virtual machine has no JVMTI");
        }
        return static_cast<jvmtiEnv*>(found);
    }();
    return environment;
}

/// The class of an injected exception. Kept for the life of the process, since a call that is failing may outlive
/// its recorder.
jclass exceptionClass(JNIEnv* env, const std::string& name) {
    static std::mutex mutex;
    static std::map<std::string, jclass> classes;
    const std::lock_guard lock(mutex);
    if (const auto found = classes.find(name); found != classes.end()) {
        return found->second;
    }
    const jclass local = env->FindClass(name.c_str());
    if (local == nullptr) {
        env->ExceptionClear();
        throw std::invalid_argument("no such exception class: " + name);
    }
    const auto global = static_cast<jclass>(env->NewGlobalRef(local));
    env->DeleteLocalRef(local);
    return classes[name] = global;
}

void requireFallible(const std::string& pattern) {
    const std::string name = pattern.substr(0, pattern.find(' '));
    if (name.empty()) {
        return;
    }
    const JniFunction* function = findJniFunction(name.c_str());
    if (function == nullptr) {
        throw std::invalid_argument("not a recorded JNI function: " + name);
    }
    if (function->fallibility == Fallibility::Never) {
        throw std::invalid_argument(name + " cannot fail");
    }
}

}  // namespace

JniRecorder::JniRecorder(JavaVM* vm) : m_vm(vm) {
    JniRecorder* none = nullptr;
    if (!theRecorder.compare_exchange_strong(none, this)) {
        throw std::logic_error("another JniRecorder lives");
    }
    try {
        const AttachedScope attached(vm);
        jvmtiEnv* jvmti = jvmtiOf(vm);
        saveFunctionTable(jvmti);
        const auto* insideLibjvm = reinterpret_cast<const void*>(machineFunctions().GetVersion);
        m_recording = std::make_shared<Recording>(jvmti, insideLibjvm);
        installRecordingFunctions(jvmti);
        Recording::activate(m_recording);
    } catch (...) {
        theRecorder = nullptr;
        throw;
    }
}

JniRecorder::~JniRecorder() {
    Recording::activate(nullptr);
    const AttachedScope attached(m_vm);
    restoreMachineFunctions(jvmtiOf(m_vm));
    theRecorder = nullptr;
}

JniRecorder* JniRecorder::current() noexcept { return theRecorder; }

std::vector<JniCall> JniRecorder::records(const CallFilter& filter) const { return m_recording->calls(filter); }

std::vector<std::string> JniRecorder::calls(const CallFilter& filter) const {
    std::vector<std::string> lines;
    for (const JniCall& call : records(filter)) {
        lines.push_back(call.toString());
    }
    return lines;
}

JniCall JniRecorder::record(const std::string& pattern) const {
    const std::vector<JniCall> found = records({.only = pattern});
    if (found.size() != 1) {
        throw std::logic_error(std::to_string(found.size()) + " calls match \"" + pattern + "\", not one");
    }
    return found.front();
}

std::size_t JniRecorder::count(const std::string& pattern) const { return m_recording->count({.only = pattern}); }

std::size_t JniRecorder::countOnAllThreads(const std::string& pattern) const {
    return m_recording->count({.allThreads = true, .only = pattern});
}

long JniRecorder::liveLocals(ThreadNumber thread) const {
    return m_recording->ledger([thread](const ReferenceLedger& ledger) { return ledger.locals(thread); });
}

long JniRecorder::peakLocals() const {
    return m_recording->ledger([](const ReferenceLedger& ledger) { return ledger.peakLocals(thisThread()); });
}

long JniRecorder::liveGlobals() const {
    return m_recording->ledger([](const ReferenceLedger& ledger) { return ledger.globals(); });
}

long JniRecorder::liveWeaks() const {
    return m_recording->ledger([](const ReferenceLedger& ledger) { return ledger.weaks(); });
}

long JniRecorder::liveChars() const {
    return m_recording->ledger([](const ReferenceLedger& ledger) { return ledger.chars(); });
}

std::vector<std::string> JniRecorder::leaks() const {
    return m_recording->ledger([](const ReferenceLedger& ledger) { return ledger.leaks(); });
}

std::vector<std::string> JniRecorder::takeLeftToFrames() { return m_recording->takeLeftToFrames(); }

void JniRecorder::fail(JniFault fault) {
    requireFallible(fault.call);
    PlannedFailure failure;
    if (!fault.failure.exceptionClass.empty()) {
        const Unrecorded unrecorded;
        const AttachedScope attached(m_vm);
        failure.exceptionClass = exceptionClass(attached.env(), fault.failure.exceptionClass);
    }
    m_recording->addFault(std::move(fault), failure);
}

std::size_t JniRecorder::faultsLeft() const { return m_recording->faultsLeft(); }
std::size_t JniRecorder::fallibleCalls() const { return m_recording->fallibleCalls(); }
void JniRecorder::clear() { m_recording->clear(); }
void JniRecorder::keepCalls(bool keep) { m_recording->keepCalls(keep); }

JniRecorder::Unrecorded::Unrecorded() noexcept { ++unrecordedDepth(); }
JniRecorder::Unrecorded::~Unrecorded() { --unrecordedDepth(); }

}  // namespace storage::javaprovider::test
