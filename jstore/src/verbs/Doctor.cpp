#include <fmt/format.h>

#include "base/Text.h"
#include "doctor/Checks.h"
#include "java/ClassArchive.h"
#include "java/MachineOptions.h"
#include "process/Interrupt.h"
#include "storage/jvm/JVMWrapper.h"
#include "verbs/Verb.h"

namespace jstore {

using doctor::Check;
using doctor::Checks;
using doctor::Mark;
using storage::jvm::JavaCandidate;

namespace {

const char* markWord(Mark mark) {
    switch (mark) {
        case Mark::Ok:
            return "ok";
        case Mark::Warning:
            return "warn";
        default:
            return "FAIL";
    }
}

class Doctor final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "doctor"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Show what jstore found on this machine and what is wrong",
                .text =
                    "The exit code is 0 if jstore works with these options, 7 without a usable Java, otherwise 1.\n"
                    "\n"
                    "The installation makes a class archive for the Java that it finds. When Java, the jars or\n"
                    "jstore's folder change, commands ignore the archive until it is made again.",
                .examples = {"jstore doctor", "jstore --mount store=backup doctor"}};
    }

    void declare(CLI::App& command) override {
        command.add_flag("--make-archive", m_makeArchive,
                         "Archive jstore's classes for this Java, so that commands start faster");
    }

    ExitCode run(Context& context) override {
        m_context = &context;
        const Options& options = context.options();
        if (m_makeArchive) {
            requireDefaults(options);
        }
        const std::vector<JavaCandidate> candidates = javaCandidates(options);
        const JavaCandidate* const java = usable(candidates);
        show(doctor::javaHomes(candidates));
        show(doctor::classPath(options));
        if (java == nullptr) {
            show(doctor::mounts(options));
            show({doctor::locale(nullptr)});
            return ExitCode::NoJava;
        }
        if (m_makeArchive) {
            const Check made = doctor::makeArchive(options, *java);
            if (interrupted()) {
                return interruptionCode();
            }
            show({made});
        }
        const ExitCode running = showRunning(candidates, *java);
        return running == ExitCode::Done && !m_usable ? ExitCode::Failed : running;
    }

private:
    /// No other command could use an archive for other classes or another kind of machine.
    static void requireDefaults(const Options& options) {
        if (!takesClassArchive(options) || !options.jvmOptions.empty()) {
            throw usageError(
                "doctor: --make-archive cannot be used with --class-path, JSTORE_CLASS_PATH or --jvm-option");
        }
    }

    /// Starts the machine and shows what it finds there; Done unless the machine does not start.
    ExitCode showRunning(const std::vector<JavaCandidate>& candidates, const JavaCandidate& java) {
        std::shared_ptr<storage::jvm::EmbeddedJVM> jvm;
        try {
            jvm = startJava(m_context->options(), candidates);
        } catch (const CommandError& error) {
            const char* const hint = "check --jvm-option, --java-home and JAVA_HOME";
            show({{Mark::Failure, "java", messageOf(error.problem()), hint}});
            show(doctor::mounts(m_context->options()));
            show({doctor::locale(nullptr)});
            return error.problem().exitCode;
        }
        storage::jvm::JVMWrapper attached(jvm->getJavaVM());
        show(doctor::runningJava(attached.getEnv(), *jvm));
        show({doctor::locale(attached.getEnv())});
        show(doctor::signals());
        show({doctor::provider(jvm, m_context->options())});
        show(doctor::openedMounts(jvm, m_context->options()));
        show({doctor::archive(m_context->options(), java)});
        return ExitCode::Done;
    }

    /// Prints the findings and notes whether one is a failure.
    void show(const Checks& checks) {
        for (const Check& check : checks) {
            print(check);
            m_usable = m_usable && check.mark != Mark::Failure;
        }
    }

    void print(const Check& check) {
        Reporter& reporter = m_context->reporter();
        reporter.line(fmt::format("{:<4}  {:<12}  {}", markWord(check.mark), check.subject, oneLine(check.detail)));
        if (!check.hint.empty()) {
            reporter.line(fmt::format("{:<4}  {:<12}  -> {}", "", "", oneLine(check.hint)));
        }
        Reporter::Fields fields = {{"check", check.subject},
                                   {"ok", check.mark != Mark::Failure},
                                   {"mark", check.mark == Mark::Failure ? "fail" : markWord(check.mark)},
                                   {"detail", oneLine(check.detail)}};
        if (!check.hint.empty()) {
            fields["hint"] = oneLine(check.hint);
        }
        reporter.object(fields);
    }

    Context* m_context = nullptr;
    bool m_makeArchive = false;
    bool m_usable = true;
};

}  // namespace

std::unique_ptr<Verb> makeDoctor() { return std::make_unique<Doctor>(); }

}  // namespace jstore
