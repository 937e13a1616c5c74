#include <fmt/format.h>

#include "base/Text.h"
#include "doctor/Checks.h"
#include "java/ClassArchive.h"
#include "java/MachineOptions.h"
#include "options/HelpText.h"
#include "process/Interrupt.h"
#include "storage/jvm/JVMWrapper.h"
#include "verbs/Verb.h"

namespace jstore {

using doctor::Check;
using doctor::Checks;
using doctor::Mark;

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
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("doctor", "Tell what jstore found on this machine and what is wrong");
        verb.add_flag("--make-archive", m_makeArchive,
                      "Archive the classes that commands load, for this Java: they start faster");
        verb.footer(
            helpText("Ends with 0 when jstore can be used as it was called, 7 when there is no Java, else 1.\n"
                     "The installation makes an archive for the Java that it finds. Where Java or the jars have\n"
                     "become others, or jstore was moved, it is passed over until it is made again.",
                     {"jstore doctor", "jstore --mount store=backup doctor"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        m_context = &context;
        const auto& options = context.options();
        if (m_makeArchive) {
            requireDefaults(options);
        }
        const auto candidates = javaCandidates(options);
        const auto* const java = usable(candidates);
        show(doctor::javaHomes(candidates));
        show(doctor::classPath(options));
        if (java == nullptr) {
            show(doctor::mounts(options));
            show({doctor::locale(nullptr)});
            return ExitCode::NoJava;
        }
        if (m_makeArchive) {
            const auto made = doctor::makeArchive(options, *java);
            if (interrupted()) {
                return interruptionCode();
            }
            show({made});
        }
        const auto running = showRunning(*java);
        return running == ExitCode::Done && !m_usable ? ExitCode::Failed : running;
    }

private:
    /// An archive for other classes or another kind of machine would be of no use to any other command.
    static void requireDefaults(const Options& options) {
        if (!takesClassArchive(options) || !options.jvmOptions.empty()) {
            throw usageError("doctor: --make-archive goes without --class-path, JSTORE_CLASS_PATH and --jvm-option");
        }
    }

    /// Starts the machine and looks at it from inside; Done unless it does not start.
    ExitCode showRunning(const storage::jvm::JavaCandidate& java) {
        std::shared_ptr<storage::jvm::EmbeddedJVM> jvm;
        try {
            jvm = startJava(m_context->options());
        } catch (const CommandError& error) {
            const auto* const hint = "check --jvm-option, --java-home and JAVA_HOME";
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
        for (const auto& check : checks) {
            print(check);
            m_usable = m_usable && check.mark != Mark::Failure;
        }
    }

    void print(const Check& check) {
        auto& reporter = m_context->reporter();
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
