#pragma once

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "foundation/Export.h"
#include "jvm_interface/JVM.h"
#include "storage/jvm/JavaCandidate.h"

namespace storage::jvm {

/// How EmbeddedJVM::start() creates a virtual machine. The defaults suit a native host.
struct FOUNDATION_API EmbeddedJVMOptions {
    /// The Java home to try first. If it is empty or has no usable Java, JAVA_HOME is tried, then `java` on PATH, then
    /// the distribution's folders.
    std::filesystem::path javaHome{};
    /// Jars and folders of the system class path, in order. Each must exist, and its path must not contain a colon. An
    /// empty list means an empty class path, not the working folder.
    std::vector<std::filesystem::path> classPath{};
    /// The maximum Java heap in MiB; zero leaves it to Java (a quarter of the memory). The machine reserves address
    /// space for it and uses memory only as needed. If empty, it is 512 unless other options set it.
    std::optional<std::size_t> maxHeapMiB{};
    /// Options of the virtual machine itself (`-Dname=value`, `-XX:…`). They follow the defaults, so they override
    /// them. The environment variables work as in every Java: JAVA_TOOL_OPTIONS is read before the defaults,
    /// _JAVA_OPTIONS after these options.
    std::vector<std::string> jvmOptions{};
    /// Options that the host merely prefers. One of these, or of the library's own defaults, is left out if the
    /// environment variables, `jvmOptions` or `maxHeapMiB` already decide the same thing, because the machine would
    /// refuse both. This applies to the collector, the heap size (a larger minimum heap counts too), class sharing and
    /// its archive, how code is compiled, and any flag or property.
    std::vector<std::string> defaultOptions{};
    /// Use exactly this Java, as findJava() or javaAt() returned it. start() then searches nowhere and ignores
    /// `javaHome`.
    std::optional<JavaCandidate> java{};
};

/// A Java virtual machine inside this process, for hosts that have none of their own.
///
/// Safe to use from any thread. A process can have only one virtual machine in its lifetime: a machine that already
/// runs is used with the options it has, and after shutdown() no other can be started.
///
/// Hazards:
///  - Locale and environment belong to the whole process. While start() creates a machine, other threads that format
///    text or use environment variables may see the machine's values instead of the host's.
///  - The machine keeps its handlers for SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGPIPE, SIGXFSZ and SIGUSR2 until the
///    process ends.
///  - Once a machine has been created, libfoundation and libjvm stay in the process; dlclose() does not unload them.
class FOUNDATION_API EmbeddedJVM final : public jvm_interface::JVM {
public:
    /// Starts the virtual machine, or uses the one that runs. Blocks until Java is ready (about 100 ms).
    ///
    /// Later and concurrent calls return a handle to the same machine, whatever their options. The host keeps its
    /// signals (-Xrs, no attach listener), and the machine's own messages are not printed. LC_CTYPE is UTF-8 while the
    /// machine starts, so that file names outside ASCII work under any locale; afterwards the host's locale and
    /// environment are restored. The calling thread is not left attached. A Java home that lacks a file which every
    /// start needs is skipped, like one without Java.
    ///
    /// Throws AnonymousInternalException<std::runtime_error>
    ///  - if no Java is found; the text names each place that was tried;
    ///  - if something on the class path is missing or unusable; the text names it;
    ///  - if the virtual machine refuses to start; the text has the machine's own message, and names the environment
    ///    variables that added options;
    ///  - if options in a variable or an options file cannot be read, for example because of an unmatched quote;
    ///    nothing is started then;
    ///  - for an option, wherever it is set, that makes the machine write a class archive and end the process
    ///    (`-Xshare:dump`); nothing is started then;
    ///  - after shutdown() has ended a machine, and in a child made by fork() from a process with a machine.
    ///
    /// After a failure start() may be called again, unless a machine failed halfway and would have ended the process (a
    /// heap that cannot be reserved, conflicting options, a damaged home). Its threads are then parked, and every later
    /// call fails.
    [[nodiscard]] static std::shared_ptr<EmbeddedJVM> start(const EmbeddedJVMOptions& options = {});

    /// Returns null after shutdown(), and in a child process made by fork(), where no virtual machine runs.
    [[nodiscard]] JavaVM* getJavaVM() override;

    /// Ends the virtual machine: from now on every operation fails with "JVM remvoed". Waits for Java's non-daemon
    /// threads, and detaches the calling thread. Destroy providers and streams first; calls that are still in Java may
    /// block forever. A machine that start() found running is only released, not ended. A second call does nothing.
    ///
    /// Throws AnonymousInternalException<std::runtime_error>, and the machine stays usable, if the calling thread is
    /// inside a native method that Java called. Throws the same, and the machine cannot be used any more, if the
    /// machine refuses to end.
    void shutdown();

    /// Leaves the virtual machine running: only the host can decide to end it while other threads may be in Java.
    ~EmbeddedJVM() override;

    EmbeddedJVM(const EmbeddedJVM&) = delete;
    EmbeddedJVM& operator=(const EmbeddedJVM&) = delete;

    /// Returns the path of the libjvm that runs; empty if the host created its machine in some other way.
    [[nodiscard]] const std::filesystem::path& libjvm() const noexcept { return m_libjvm; }
    /// Whether start() created the machine, in this call or an earlier one; false if the host did.
    [[nodiscard]] bool startedHere() const noexcept { return m_startedHere; }

private:
    EmbeddedJVM(JavaVM* vm, std::filesystem::path libjvm, bool startedHere);

    /// Returns a handle to a machine that was not created here; null if none runs.
    static std::shared_ptr<EmbeddedJVM> takeHostsMachine();
    /// Takes the machine away from every handle. Returns false if another thread was first.
    bool withdraw();

    std::atomic<JavaVM*> m_vm;
    std::filesystem::path m_libjvm;
    bool m_startedHere;
};

/// Returns every place that start() tries for these options, in order; only `java`, if that is set. Reads the file
/// system, loads nothing. start() takes the first that has no problem and can be loaded, unless a machine runs already.
[[nodiscard]] FOUNDATION_API std::vector<JavaCandidate> findJava(const EmbeddedJVMOptions& options = {});

}  // namespace storage::jvm
