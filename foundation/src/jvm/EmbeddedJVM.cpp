#include "storage/jvm/EmbeddedJVM.h"

#include <mutex>
#include <utility>

#include "jvm/CreationEnvironment.h"
#include "jvm/Failure.h"
#include "jvm/ForkWatch.h"
#include "jvm/JavaSearch.h"
#include "jvm/Libjvm.h"
#include "jvm/MachineCreation.h"
#include "jvm/MachineOptions.h"
#include "jvm/ThreadEnvironment.h"

namespace storage::jvm {

namespace {

/// The one virtual machine that EmbeddedJVM can make in the life of a process.
struct ProcessMachine {
    std::mutex mutex;
    std::weak_ptr<EmbeddedJVM> handle;  ///< what start() gave out, while anyone holds it
    JavaVM* vm = nullptr;               ///< null until it is made, and again when it is shut down
    std::filesystem::path libjvm;
    std::string over;  ///< why no machine can be made any more; empty while one can
};

/// Never destroyed: a host's threads may hold or ask for a handle until the process ends.
ProcessMachine& processMachine() {
    static auto& only = *new ProcessMachine;
    return only;
}

std::string describeRefusal(const std::filesystem::path& libjvm, const detail::CreationResult& result) {
    const std::string words = result.words.empty() ? "it gave no reason" : result.words;
    const std::string end = result.endedItself ? "it tried to end the process" : detail::describeJniError(result.error);
    const std::string variables = detail::describeVariables();
    return "The Java virtual machine " + libjvm.string() + " does not start: " + words + " [" + end + "]" +
           (variables.empty() ? "" : " (options were added by " + variables + ")");
}

detail::CreationResult createQuietly(const detail::LoadedLibjvm& libjvm, const std::vector<std::string>& options) {
    const detail::HostLocale locale;
    const detail::CreationEnvironment environment;
    return detail::createMachine(libjvm.create, options);
}

/// Makes the machine and records it. The caller holds the lock.
void makeMachine(ProcessMachine& process, const EmbeddedJVMOptions& options) {
    const std::vector<std::string> machineOptions = detail::machineOptions(options);
    const detail::LoadedLibjvm libjvm = detail::loadLibjvm(findJava(options));
    detail::stayInProcess();
    const detail::CreationResult result = createQuietly(libjvm, machineOptions);
    if (result.vm != nullptr) {
        process.vm = result.vm;
        process.libjvm = libjvm.path;
        detail::ForkWatch::keep();
        return;
    }
    const std::string refusal = describeRefusal(libjvm.path, result);
    if (result.endedItself) {
        process.over = "No virtual machine can start after one that failed halfway: " + refusal;
    }
    detail::fail(refusal);
}

/// Detaches the calling thread if it is attached: the machine ends only when no attached thread but daemons is left.
void leaveMachine(JavaVM* vm) {
    JNIEnv* const env = detail::attachedEnv(vm);
    if (env == nullptr) {
        return;
    }
    if (const jint error = detail::detachThread(vm, env); error != JNI_OK) {
        detail::fail("The virtual machine cannot be shut down from a method that Java calls: " +
                     detail::describeJniError(error));
    }
}

}  // namespace

EmbeddedJVM::EmbeddedJVM(JavaVM* vm, std::filesystem::path libjvm, bool startedHere)
    : m_vm(vm), m_libjvm(std::move(libjvm)), m_startedHere(startedHere) {}

// Other threads may be in Java, and a destructor cannot know: see shutdown().
EmbeddedJVM::~EmbeddedJVM() = default;

std::shared_ptr<EmbeddedJVM> EmbeddedJVM::start(const EmbeddedJVMOptions& options) {
    if (detail::inForkedChild()) {
        detail::fail("The virtual machine runs in the parent process; a forked process cannot use it");
    }
    const detail::ForkWatch forks;
    ProcessMachine& process = processMachine();
    const std::lock_guard lock(process.mutex);
    if (!process.over.empty()) {
        detail::fail(process.over);
    }
    if (std::shared_ptr<EmbeddedJVM> known = process.handle.lock()) {
        return known;
    }
    if (process.vm == nullptr) {
        if (std::shared_ptr<EmbeddedJVM> hosts = takeHostsMachine()) {
            return hosts;
        }
        makeMachine(process, options);
    }
    std::shared_ptr<EmbeddedJVM> made(new EmbeddedJVM(process.vm, process.libjvm, /*startedHere=*/true));
    process.handle = made;
    return made;
}

std::shared_ptr<EmbeddedJVM> EmbeddedJVM::takeHostsMachine() {
    detail::RunningMachine running = detail::findRunningMachine();
    if (running.vm == nullptr) {
        return nullptr;
    }
    detail::ForkWatch::keep();
    return std::shared_ptr<EmbeddedJVM>(new EmbeddedJVM(running.vm, std::move(running.libjvm), /*startedHere=*/false));
}

JavaVM* EmbeddedJVM::getJavaVM() { return detail::inForkedChild() ? nullptr : m_vm.load(std::memory_order_acquire); }

void EmbeddedJVM::shutdown() {
    JavaVM* const vm = getJavaVM();
    if (vm == nullptr) {
        return;
    }
    if (!m_startedHere) {
        m_vm = nullptr;
        return;
    }
    leaveMachine(vm);
    if (!withdraw()) {
        return;
    }
    if (const jint error = vm->DestroyJavaVM(); error != JNI_OK) {
        detail::fail("The Java virtual machine cannot be ended: " + detail::describeJniError(error));
    }
}

bool EmbeddedJVM::withdraw() {
    ProcessMachine& process = processMachine();
    const std::lock_guard lock(process.mutex);
    process.vm = nullptr;
    process.over = "The virtual machine of this process was shut down; a process cannot start another";
    return m_vm.exchange(nullptr) != nullptr;
}

std::vector<JavaCandidate> findJava(const EmbeddedJVMOptions& options) {
    if (options.java) {
        return {*options.java};
    }
    return detail::searchJava(options.javaHome, detail::SearchPlaces::ofProcess());
}

}  // namespace storage::jvm
