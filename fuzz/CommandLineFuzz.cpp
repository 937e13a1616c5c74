// The command line: one argument a line.
#include <algorithm>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "Input.h"
#include "Require.h"
#include "base/Problem.h"

using fuzz::require;

namespace {

constexpr std::size_t MostArguments = 32;

std::vector<std::string> argumentsIn(fuzz::Bytes input) {
    std::vector<std::string> arguments{"jstore"};
    if (input.empty()) {
        return arguments;
    }
    for (const auto line : fuzz::linesOf(input, MostArguments)) {
        arguments.emplace_back(line.substr(0, line.find('\0')));
    }
    return arguments;
}

bool isMarked(const std::string& text) { return text.find('\x01') != std::string::npos; }

/// Nothing of how arguments are handed to the parser may show, unless the user wrote it.
void checkOptions(const jstore::Options& options, const std::vector<std::string>& given) {
    if (std::any_of(given.begin(), given.end(), isMarked)) {
        return;
    }
    require(!isMarked(options.provider) && !isMarked(options.javaHome.string()), "no mark stays in an option");
    require(std::none_of(options.classPath.begin(), options.classPath.end(), isMarked), "nor in a class path");
    require(std::none_of(options.jvmOptions.begin(), options.jvmOptions.end(), isMarked), "nor in an option of Java's");
    require(!options.provider.empty(), "the provider has a name");
}

void check(const std::vector<std::string>& arguments) {
    std::vector<const char*> argv;
    std::transform(arguments.begin(), arguments.end(), std::back_inserter(argv),
                   [](const std::string& argument) { return argument.c_str(); });
    jstore::CommandLine commandLine;
    try {
        const std::string text = commandLine.parse(static_cast<int>(argv.size()), argv.data());
        require(!text.empty() || !commandLine.verbName().empty(), "a text to print, or a verb to run");
        if (text.empty()) {
            static_cast<void>(commandLine.verb());
        }
        checkOptions(commandLine.options(), arguments);
    } catch (const jstore::CommandError& error) {
        const auto line = jstore::errorLine(error.problem());
        require(line.starts_with("jstore: ") && line.find('\n') == std::string::npos, "errors are one line", line);
        require(!isMarked(line), "no mark stays in an error", line);
        require(error.problem().exitCode == jstore::ExitCode::Usage ||
                    error.problem().exitCode == jstore::ExitCode::NotFound,
                "an error of the user's", line);
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    check(argumentsIn(fuzz::bytesOf(data, size)));
    return 0;
}
