#include "jvm/MachineCreation.h"

#include <pthread.h>
#include <sched.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "jvm/Failure.h"
#include "jvm/MachineHooks.h"
#include "jvm/RedirectedImports.h"
#include "jvm/ThreadEnvironment.h"

namespace storage::jvm::detail {

namespace {

/// The usual stack of a program's first thread. The machine's start needs a fraction of it.
constexpr std::size_t CreatorStack = std::size_t{8} * 1024 * 1024;

/// One call of JNI_CreateJavaVM with all that it reads. The thread that makes the call and the one that waits share it:
/// a thread that the machine never releases keeps its share for ever.
struct Attempt {
    CreateJavaVM* create = nullptr;
    std::vector<std::string> texts;
    std::vector<JavaVMOption> options;
    bool folderIsRemoved = false;  ///< the process's working folder is
    jint error = JNI_OK;
    JavaVM* vm = nullptr;
};

bool hasWorkingFolder() {
    std::error_code error;
    static_cast<void>(std::filesystem::current_path(error));
    return !error;
}

std::shared_ptr<Attempt> prepare(CreateJavaVM* create, const std::vector<std::string>& options) {
    auto attempt = std::make_shared<Attempt>();
    attempt->create = create;
    attempt->folderIsRemoved = !hasWorkingFolder();
    if (attempt->folderIsRemoved) {
        // Without it the first use of a path on one of the host's threads fails, and so does every later one.
        attempt->texts.emplace_back("-Dsun.nio.fs.chdirAllowed=true");
    }
    attempt->texts.insert(attempt->texts.end(), options.begin(), options.end());
    attempt->options = hookOptions();
    for (std::string& text : attempt->texts) {
        attempt->options.push_back({text.data(), nullptr});
    }
    return attempt;
}

/// Java's classes need a working folder. Moves this thread, and those that the machine starts from it, to the root; the
/// host's threads stay where they are. Where the system forbids it, Java reports what is missing.
void leaveRemovedFolder() {
    if (unshare(CLONE_FS) == 0) {
        // The root is always there. If it were not, Java would report it.
        static_cast<void>(!chdir("/"));
    }
}

/// Makes the machine and detaches at once: the thread that made it needs nothing more of it.
void run(Attempt& attempt) {
    JavaVMInitArgs arguments{};
    arguments.version = JniVersion;
    arguments.nOptions = static_cast<jint>(attempt.options.size());
    arguments.options = attempt.options.data();
    arguments.ignoreUnrecognized = JNI_FALSE;
    void* env = nullptr;
    if (attempt.folderIsRemoved) {
        leaveRemovedFolder();
    }
    attempt.error = attempt.create(&attempt.vm, &env, &arguments);
    if (attempt.error == JNI_OK) {
        detachThread(attempt.vm, static_cast<JNIEnv*>(env));
    }
    reportReturn();
}

void* runOnThread(void* share) {
    const std::unique_ptr<std::shared_ptr<Attempt>> attempt(static_cast<std::shared_ptr<Attempt>*>(share));
    run(**attempt);
    return nullptr;
}

/// Starts a thread with a stack of a known size, whatever the process's limits are.
pthread_t startThread(const std::shared_ptr<Attempt>& attempt) {
    auto share = std::make_unique<std::shared_ptr<Attempt>>(attempt);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, CreatorStack);
    pthread_t thread{};
    const int error = pthread_create(&thread, &attributes, runOnThread, share.get());
    pthread_attr_destroy(&attributes);
    if (error != 0) {
        fail("Cannot start a thread for the Java virtual machine: " + std::generic_category().message(error));
    }
    static_cast<void>(share.release());  // the thread owns it now
    return thread;
}

/// The lines that hold text, joined to one. A crash report draws a frame of `#` around itself.
std::string asOneLine(const std::string& text) {
    constexpr std::string_view frame = "# \t\r";
    constexpr std::size_t longest = 2000;
    std::string joined;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line) && joined.size() < longest;) {
        const std::size_t first = line.find_first_not_of(frame);
        if (first != std::string::npos) {
            const std::size_t last = line.find_last_not_of(frame);
            joined += (joined.empty() ? "" : "; ") + line.substr(first, last - first + 1);
        }
    }
    return joined;
}

}  // namespace

CreationResult createMachine(CreateJavaVM* create, const std::vector<std::string>& options) {
    const std::shared_ptr<Attempt> attempt = prepare(create, options);
    const RedirectedImports redirected(reinterpret_cast<const void*>(create), hookImports());
    beginCreation();
    const pthread_t thread = startThread(attempt);
    if (awaitCreation() == CreationState::Ended) {
        pthread_detach(thread);
        return {nullptr, asOneLine(creationOutput()), JNI_ERR, /*endedItself=*/true};
    }
    pthread_join(thread, nullptr);
    JavaVM* const vm = attempt->error == JNI_OK ? attempt->vm : nullptr;
    return {vm, asOneLine(creationOutput()), attempt->error, /*endedItself=*/false};
}

}  // namespace storage::jvm::detail
