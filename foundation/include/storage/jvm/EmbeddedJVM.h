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

namespace storage::jvm {

/// How EmbeddedJVM::start() makes a virtual machine. Everything has a default that suits a native host.
struct FOUNDATION_API EmbeddedJVMOptions {
    /// Where Java is installed, the first place to look. Where it is empty or holds no usable Java, JAVA_HOME, then
    /// `java` on PATH, then the distribution's folders are tried.
    std::filesystem::path javaHome{};
    /// Jars and folders of the system class path, in order. Each must be a folder or a file and have no colon in its
    /// name. An empty list is an empty class path, not the working folder.
    std::vector<std::filesystem::path> classPath{};
    /// The largest Java heap in MiB; zero leaves it to Java (a quarter of the memory). The machine reserves address
    /// space for it and uses memory as it needs. Where it is not stated it is 512, unless other options say otherwise.
    std::optional<std::size_t> maxHeapMiB{};
    /// Options of the virtual machine itself (`-Dname=value`, `-XX:…`), after the defaults, so they win. The variables
    /// JAVA_TOOL_OPTIONS and _JAVA_OPTIONS count as they do for every Java: the one before the defaults, the other
    /// last.
    std::vector<std::string> jvmOptions{};
    /// Options that the host only prefers. One of these, or of the library's own defaults, is left out when the
    /// variables, `jvmOptions` or the stated heap decide the same: the collector, the size of the heap (also a smallest
    /// heap that is larger), class sharing and its archive, how code is compiled, the same flag or property. Two of a
    /// kind would be refused by the machine.
    std::vector<std::string> defaultOptions{};
};

/// A Java virtual machine inside this process, for hosts that have none of their own.
///
/// Safe to use from any thread. A process can hold one virtual machine in its whole life: a machine that runs already
/// is used as it is (its options stay its own), and after shutdown() no other can be started.
///
/// Hazards:
///  - The locale and the environment belong to the whole process: while start() makes a machine, threads that format
///    text or change variables may see the machine's instead of the host's.
///  - The machine keeps its handlers for SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGPIPE, SIGXFSZ and SIGUSR2 until the
///    process ends.
///  - libfoundation and libjvm stay in the process once a machine was made; dlclose() no longer unloads them.
class FOUNDATION_API EmbeddedJVM final : public jvm_interface::JVM {
public:
    /// Starts the virtual machine, or takes the one that runs. Blocks until Java is up (some 100 ms).
    ///
    /// A later or concurrent call gives a handle on the same machine, whatever its options say.
    /// Signals stay the host's (-Xrs, no attach listener), nothing the machine itself says is printed, and LC_CTYPE is
    /// UTF-8 while the machine starts, so that file names outside ASCII work under any locale; the host's locale and
    /// environment are restored afterwards. The calling thread is not left attached.
    /// A Java home that lacks a file without which no machine begins is passed over like one without Java.
    /// Throws AnonymousInternalException<std::runtime_error> whose text names each place that was tried when no Java
    /// is found, what is missing on the class path, or what the virtual machine said when it refused to start, with the
    /// variables that add options. Throws too, and begins nothing, for an option that makes the machine write a class
    /// archive and end the process (`-Xshare:dump`), wherever it stands. After a refusal start() may be called again,
    /// with one exception: a machine that failed half-way and would have ended the process (a heap that cannot be had,
    /// options at odds, a home that is damaged) leaves its threads parked, and every later call fails.
    /// Fails too after shutdown(), and in a child made by fork() from a process with a machine.
    [[nodiscard]] static std::shared_ptr<EmbeddedJVM> start(const EmbeddedJVMOptions& options = {});

    /// Null after shutdown(), and in a child process made by fork(), where no virtual machine runs.
    [[nodiscard]] JavaVM* getJavaVM() override;

    /// Ends the virtual machine: from now on every operation fails with "JVM remvoed". Waits for Java's non-daemon
    /// threads, and detaches the calling thread. Destroy providers and streams first; what still runs in Java meanwhile
    /// may block for ever. A machine that start() found running is only let go. Calling it twice is harmless.
    /// Throws AnonymousInternalException<std::runtime_error>, with the machine still usable, when the calling thread is
    /// inside a method that Java called.
    void shutdown();

    /// Leaves the virtual machine running: ending it while other threads may be in Java is the host's decision.
    ~EmbeddedJVM() override;

    EmbeddedJVM(const EmbeddedJVM&) = delete;
    EmbeddedJVM& operator=(const EmbeddedJVM&) = delete;

    /// The libjvm that runs, as a path; empty when the process brought its machine along some other way.
    [[nodiscard]] const std::filesystem::path& libjvm() const noexcept { return m_libjvm; }
    /// Whether start() made the machine, in this or an earlier call (false: the host brought it).
    [[nodiscard]] bool startedHere() const noexcept { return m_startedHere; }

private:
    EmbeddedJVM(JavaVM* vm, std::filesystem::path libjvm, bool startedHere);

    /// A handle on a machine that was not made here; null when none runs.
    static std::shared_ptr<EmbeddedJVM> takeHostsMachine();
    /// Takes the machine from every handle. Returns false when another thread was first.
    bool withdraw();

    std::atomic<JavaVM*> m_vm;
    std::filesystem::path m_libjvm;
    bool m_startedHere;
};

/// One place where start() looks for Java, and what it found there.
struct FOUNDATION_API JavaCandidate {
    std::string origin;            ///< "given home", "JAVA_HOME", "java on PATH" or "distribution folder"
    std::filesystem::path home;    ///< the Java home; empty when the origin names none
    std::filesystem::path libjvm;  ///< the library inside it; empty when there is none
    std::string problem;           ///< why it is not usable; empty for a usable one
    std::string version{};         ///< what the home states, such as "17.0.15"; empty when it states none
};

/// Every place that start() would try for these options, in order, without loading anything. start() takes the first
/// without a problem, as long as no machine runs yet.
[[nodiscard]] FOUNDATION_API std::vector<JavaCandidate> findJava(const EmbeddedJVMOptions& options = {});

}  // namespace storage::jvm
