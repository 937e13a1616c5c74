#include "jvm/MachineHooks.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <string_view>

namespace storage::jvm::detail {

namespace {

constexpr std::size_t LongestOutput = std::size_t{16} * 1024;

/// What the hooks, the creating thread and the waiting one share.
struct Creation {
    std::mutex mutex;
    std::condition_variable changed;
    CreationState state = CreationState::Idle;
    std::string output;              ///< has room for all that is kept: no hook may throw through the machine's frames
    std::atomic<pid_t> process = 0;  ///< where the machine is made
};

/// Never destroyed: the machine calls its hooks until the very end of the process.
Creation& creation() {
    static auto& only = *new Creation;
    return only;
}

/// Whether this is a child that the machine forked to run a command: there another thread's lock stays locked for ever.
bool inChild(const Creation& shared) { return shared.process != getpid(); }

bool leaveCreating(CreationState next) {
    Creation& shared = creation();
    if (inChild(shared)) {
        return false;
    }
    const std::lock_guard lock(shared.mutex);
    if (shared.state != CreationState::Creating) {
        return false;
    }
    shared.state = next;
    shared.changed.notify_all();
    return true;
}

/// Parks the calling thread for ever. The machine does not expect to come back from the end of the process, so its
/// thread can neither return nor be unwound. The host's signals go to other threads.
[[noreturn]] void park() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    for (;;) {
        pause();
    }
}

void keep(std::string_view text) {
    Creation& shared = creation();
    if (inChild(shared)) {
        return;
    }
    const std::lock_guard lock(shared.mutex);
    if (shared.state == CreationState::Creating && shared.output.size() + text.size() <= LongestOutput) {
        shared.output.append(text);
    }
}

/// The machine's print function. Text for its log files comes here too, and is written to them.
jint JNICALL print(std::FILE* stream, const char* format, va_list arguments) {
    if (stream != stdout && stream != stderr) {
        return std::vfprintf(stream, format, arguments);
    }
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length > 0) {
        const std::size_t size = static_cast<std::size_t>(length) + 1;
        if (const std::unique_ptr<char[]> text(new (std::nothrow) char[size]); text != nullptr) {
            std::vsnprintf(text.get(), size, format, arguments);
            keep({text.get(), size - 1});
        }
    }
    return length;
}

/// Called in place of write().
ssize_t writeBytes(int descriptor, const void* bytes, std::size_t count) {
    if (descriptor != STDOUT_FILENO && descriptor != STDERR_FILENO) {
        return ::write(descriptor, bytes, count);
    }
    keep({static_cast<const char*>(bytes), count});
    return static_cast<ssize_t>(count);
}

/// Called in place of fwrite().
std::size_t writeItems(const void* items, std::size_t size, std::size_t count, std::FILE* stream) {
    if (stream != stdout && stream != stderr) {
        return std::fwrite(items, size, count, stream);
    }
    keep({static_cast<const char*>(items), size * count});
    return count;
}

/// Called in place of exit(), by a start that fails and later by System.exit().
void JNICALL exitProcess(jint code) {
    if (leaveCreating(CreationState::Ended)) {
        park();
    }
    std::exit(code);
}

/// Called in place of _exit().
void exitAtOnce(int code) {
    if (leaveCreating(CreationState::Ended)) {
        park();
    }
    ::_exit(code);
}

/// Called before abort() or exit(1), by a start that fails and later by a machine that crashes. Once it returns, the
/// process ends.
void JNICALL abortProcess() {
    if (leaveCreating(CreationState::Ended)) {
        park();
    }
}

/// Called in place of abort().
void abortAtOnce() {
    abortProcess();
    std::abort();
}

JavaVMOption hook(const char* name, void* function) { return {const_cast<char*>(name), function}; }

}  // namespace

std::vector<JavaVMOption> hookOptions() {
    return {hook("vfprintf", reinterpret_cast<void*>(print)), hook("exit", reinterpret_cast<void*>(exitProcess)),
            hook("abort", reinterpret_cast<void*>(abortProcess))};
}

std::array<Import, 5> hookImports() {
    return {Import{"exit", reinterpret_cast<void*>(exitProcess)}, Import{"_exit", reinterpret_cast<void*>(exitAtOnce)},
            Import{"abort", reinterpret_cast<void*>(abortAtOnce)}, Import{"write", reinterpret_cast<void*>(writeBytes)},
            Import{"fwrite", reinterpret_cast<void*>(writeItems)}};
}

void beginCreation() {
    Creation& shared = creation();
    const std::lock_guard lock(shared.mutex);
    shared.output.clear();
    shared.output.reserve(LongestOutput);
    shared.process = getpid();
    shared.state = CreationState::Creating;
}

void reportReturn() { leaveCreating(CreationState::Returned); }

CreationState awaitCreation() {
    Creation& shared = creation();
    std::unique_lock lock(shared.mutex);
    shared.changed.wait(lock, [&] { return shared.state != CreationState::Creating; });
    return shared.state;
}

std::string creationOutput() {
    Creation& shared = creation();
    const std::lock_guard lock(shared.mutex);
    return shared.output;
}

}  // namespace storage::jvm::detail
