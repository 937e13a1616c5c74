#include <cerrno>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>

#include "CommandLine.h"
#include "base/MemoryError.h"
#include "base/Problem.h"
#include "java/LogSink.h"
#include "output/Reporter.h"
#include "process/Inheritance.h"
#include "process/Interrupt.h"
#include "process/StandardStreams.h"
#include "work/Context.h"
#include "work/EndOfCommand.h"
#include "work/ReportFailure.h"

namespace jstore {

namespace {

Options withSurroundings(Options options) {
    const char* const classPath = std::getenv("JSTORE_CLASS_PATH");
    options.environmentClassPath = classPath == nullptr ? "" : classPath;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    options.installedJars = (program.parent_path() / JSTORE_JARS).lexically_normal();
    options.archives = (program.parent_path() / JSTORE_ARCHIVES).lexically_normal();
    return options;
}

/// Runs the verb. Turns what ends it early into an exit code.
ExitCode outcomeOf(const CommandLine& commandLine, Context& context) {
    try {
        return commandLine.verb().run(context);
    } catch (const Interruption&) {
        return interruptionCode();
    } catch (const EndOfCommand& end) {
        return end.code();
    }
}

ExitCode runVerb(const CommandLine& commandLine) {
    Context context(withSurroundings(commandLine.options()));
    context.reporter().setVerb(commandLine.verbName());
    watchInterrupt();
    startLog(context.options().logLevel);
    try {
        const ExitCode code = outcomeOf(commandLine, context);
        if (isInterruption(code)) {
            reportInterruption(context);
        }
        const std::optional<Problem> problem = context.end();
        if (!problem) {
            return code;
        }
        context.reporter().failed(*problem);
        return code == ExitCode::Done ? problem->exitCode : code;
    } catch (const CommandError& error) {
        if (error.problem().exitCode == ExitCode::Usage) {
            throw;
        }
        context.reporter().failed(error.problem());
        return error.problem().exitCode;
    }
}

/// Standard output cannot be written any more. After a signal that is expected: the terminal may be gone.
ExitCode outputFailed(const OutputError& error) {
    if (interrupted()) {
        return interruptionCode();
    }
    if (error.error() == EPIPE) {
        endByBrokenPipe();
    }
    writeErrorLine({"Output", {}, error.what(), ExitCode::Failed});
    return ExitCode::Failed;
}

ExitCode runCommand(int argc, const char* const* argv) {
    try {
        CommandLine commandLine;
        const std::string answer = commandLine.parse(argc, argv);
        if (!answer.empty()) {
            writeOutput(answer);
            return ExitCode::Done;
        }
        return runVerb(commandLine);
    } catch (const CommandError& error) {
        writeErrorLine(error.problem());
        return error.problem().exitCode;
    } catch (const OutputError& error) {
        return outputFailed(error);
    } catch (const Interruption&) {
        return interruptionCode();
    } catch (const std::exception& error) {
        const std::optional<std::string> memory = memoryHint(error);
        writeErrorLine({memory ? MemoryCode : "Internal", {}, memory.value_or(error.what()), ExitCode::Failed});
        return ExitCode::Failed;
    }
}

}  // namespace

}  // namespace jstore

int main(int argc, char** argv) {
    jstore::occupyStandardStreams();
    jstore::noteInheritedDescriptors();
    return static_cast<int>(jstore::runCommand(argc, argv));
}
