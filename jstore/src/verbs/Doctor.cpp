#include <fmt/format.h>
#include <unistd.h>

#include "ClassArchive.h"
#include "HelpText.h"
#include "JavaHome.h"
#include "Text.h"
#include "doctor/Checks.h"
#include "storage/jvm/JVMWrapper.h"
#include "verbs/Verb.h"

namespace jstore {

using doctor::Check;
using doctor::Checks;
using doctor::Mark;

namespace {

const char* wordFor(Mark mark) {
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
        verb.add_flag("--make-archive", m_makeArchive, "Archive jstore's classes for this Java: commands start faster");
        verb.footer(
            helpText("Ends with 0 when jstore can be used as it was called, 7 when there is no Java, else 1.\n"
                     "The archive is part of the installation, which makes it too. Make it again when Java has\n"
                     "become another, or the installation was moved: until then it is passed over.",
                     {"jstore doctor", "jstore --mount store=backup doctor"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        m_context = &context;
        m_options = context.options();
        if (m_makeArchive) {
            requireOwnClasses();
        }
        show(doctor::javaHomes(m_options));
        const bool haveHome = m_usable;
        show(doctor::classPath(m_options));
        show(doctor::mounts(m_options));
        if (!haveHome) {
            show({doctor::locale(nullptr)});
            return ExitCode::NoJava;
        }
        const auto running = showRunning();
        return running == ExitCode::Done && !m_usable ? ExitCode::Failed : running;
    }

private:
    void requireOwnClasses() const {
        if (!takesClassArchive(m_options)) {
            throw usageError(
                "doctor: --make-archive is for jstore's own classes, without --class-path and JSTORE_CLASS_PATH");
        }
    }

    /// Starts the machine and looks at it from inside; Done unless it does not start.
    ExitCode showRunning() {
        const auto candidates = javaCandidates(m_options);
        const auto archive = classArchiveOf(m_options, *usable(candidates));
        if (m_makeArchive && !prepareArchive(archive)) {
            return ExitCode::Failed;
        }
        std::shared_ptr<storage::jvm::EmbeddedJVM> jvm;
        try {
            jvm = startJava(m_options);
        } catch (const CommandError& error) {
            const auto* const hint = "check --jvm-option, --java-home and JAVA_HOME";
            show({{Mark::Failure, "java", messageOf(error.problem()), hint}, doctor::locale(nullptr)});
            return error.problem().exitCode;
        }
        showInside(jvm);
        show({m_makeArchive ? doctor::makeArchive(jvm, m_options, archive) : doctor::archive(m_options, archive)});
        return ExitCode::Done;
    }

    void showInside(const std::shared_ptr<storage::jvm::EmbeddedJVM>& jvm) {
        storage::jvm::JVMWrapper attached(jvm->getJavaVM());
        show(doctor::runningJava(attached.getEnv(), *jvm));
        show({doctor::locale(attached.getEnv())});
        show(doctor::signals());
        show({doctor::provider(jvm, m_options)});
    }

    /// Has the machine leave its archive beside the place where it belongs; false when there is no such place.
    bool prepareArchive(const std::filesystem::path& archive) {
        const auto check = doctor::archiveFolder(archive);
        if (check.mark == Mark::Failure) {
            show({check});
            return false;
        }
        m_options.newArchive = fmt::format("{}.{}.tmp", archive.string(), ::getpid());
        return true;
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
        reporter.line(fmt::format("{:<4}  {:<12}  {}", wordFor(check.mark), check.subject, oneLine(check.detail)));
        if (!check.hint.empty()) {
            reporter.line(fmt::format("{:<4}  {:<12}  -> {}", "", "", check.hint));
        }
        Reporter::Fields fields = {{"check", check.subject},
                                   {"ok", check.mark != Mark::Failure},
                                   {"mark", check.mark == Mark::Failure ? "fail" : wordFor(check.mark)},
                                   {"detail", oneLine(check.detail)}};
        if (!check.hint.empty()) {
            fields["hint"] = check.hint;
        }
        reporter.object(fields);
    }

    Context* m_context = nullptr;
    Options m_options;
    bool m_makeArchive = false;
    bool m_usable = true;
};

}  // namespace

std::unique_ptr<Verb> makeDoctor() { return std::make_unique<Doctor>(); }

}  // namespace jstore
