#include "CommandLine.h"

#include <fmt/format.h>
#include <CLI/Config.hpp>

#include <algorithm>
#include <map>

#include "base/ExitCode.h"
#include "base/Problem.h"
#include "base/Text.h"
#include "options/Arguments.h"
#include "options/HelpFormatter.h"
#include "options/VerbHelp.h"

namespace jstore {

namespace {

constexpr const char* Description =
    "Work with the files and folders of a Java storage back end.\n"
    "\n"
    "A LOCATION is java:///absolute/path, java://MOUNT/path, or a local path. In a java:// location,\n"
    "write # as %23 and ? as %3F. Arguments are UTF-8 in every locale; only local paths may hold other\n"
    "bytes. After --, an argument may begin with a dash.";

const std::map<std::string, LogLevel> LogLevels{{"off", LogLevel::Off},
                                                {"failures", LogLevel::Failures},
                                                {"progress", LogLevel::Progress},
                                                {"trace", LogLevel::Trace}};

const Words CommonWords{{"--log", {"off", "failures", "progress", "trace"}}};

/// Makes the parser refuse any other value.
void limit(CLI::App& command, const Words& words) {
    for (const auto& [name, values] : words) {
        const auto check = [values = values](const std::string& value) {
            const bool known = std::find(values.begin(), values.end(), value) != values.end();
            return known ? std::string() : fmt::format("{} is not one of {}", value, fmt::join(values, ", "));
        };
        command.get_option(name)->check(check);
    }
}

/// Adds an option that takes one value each time it is given.
CLI::Option* addOption(CLI::App& app, const char* name, const char* value, std::function<void(std::string)> take,
                       const char* help) {
    const auto takeAll = [take = std::move(take)](const std::vector<std::string>& values) {
        for (const std::string& one : values) {
            take(unmarked(one));
        }
    };
    CLI::Option* const option = app.add_option_function<std::vector<std::string>>(name, takeAll, help);
    return option->allow_extra_args(false)->type_name(value);
}

/// The parser's reason, in plainer words where it says "1 required N missing" and the like.
std::string reasonOf(const CLI::ParseError& error, const CLI::App& app) {
    std::string words = error.what();
    if (dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
        return fmt::format("unexpected argument {}", fmt::join(app.remaining(/*recurse=*/true), " "));
    }
    // Each option takes one value, so the only mismatch is a missing one.
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr && words.starts_with('-')) {
        return words.substr(0, words.find(':')) + " needs a value";
    }
    return words;
}

std::string className(std::string value) {
    if (value.empty() || !isUtf8(value)) {
        throw usageError("--provider: expected a class name, such as " + std::string(DefaultProvider));
    }
    return value;
}

}  // namespace

CommandLine::CommandLine() : m_app(Description, "jstore"), m_verbs(allVerbs([this] { return grammar(); })) {
    m_app.set_version_flag("--version", std::string("jstore ") + JSTORE_VERSION, "Print the version and exit");
    m_app.set_help_flag("-h,--help", "Print this help and exit; for a verb: jstore VERB --help");
    m_app.require_subcommand(1);
    m_app.formatter(std::make_shared<HelpFormatter>());
    m_app.footer(exitCodeTable());
    declareBackEnd();
    declareJava();
    declareOutput();
    limit(m_app, CommonWords);
    declareVerbs();
}

void CommandLine::declareBackEnd() {
    addOption(
        m_app, "--provider", "CLASS", [this](std::string value) { m_options.provider = className(std::move(value)); },
        "The back end's Java class (default: any file system that Java supports)");
    addOption(
        m_app, "--class-path", "P", [this](std::string value) { m_options.classPath.push_back(std::move(value)); },
        "Jars and folders to search for classes first, separated by colons");
    addOption(
        m_app, "--mount", "NAME=URI",
        [this](const std::string& value) { m_options.mounts.push_back(parseMount(value)); },
        "Show a folder (path or file:) or an archive (jar:file:) as java://NAME/");
    addOption(
        m_app, "--config", "KEY=VALUE",
        [this](const std::string& value) { m_options.settings.push_back(parseSetting(value)); },
        "Pass a setting; gds.enableContentCache=true keeps small files in memory");
}

void CommandLine::declareJava() {
    addOption(
        m_app, "--jvm-option", "O", [this](std::string value) { m_options.jvmOptions.push_back(std::move(value)); },
        "Pass an option to the Java virtual machine, for example -Xmx1g");
    addOption(
        m_app, "--java-home", "PATH", [this](const std::string& value) { m_options.javaHome = value; },
        "Use only this Java (default: search JAVA_HOME, PATH and /usr/lib/jvm)");
}

void CommandLine::declareOutput() {
    addOption(
        m_app, "--log", "LEVEL", [this](const std::string& value) { m_options.logLevel = LogLevels.at(value); },
        "Log to standard error: off, failures, progress or trace");
    m_app.add_flag("--json", m_options.json, "Print results as JSON, one object per line");
    m_app.add_flag_callback(
        "--no-progress", [this] { m_options.progress = false; }, "Show no progress line on the terminal");
}

void CommandLine::declareVerbs() {
    for (const std::unique_ptr<Verb>& verb : m_verbs) {
        const VerbHelp help = verb->help();
        CLI::App& command = *m_app.add_subcommand(verb->name(), help.summary);
        verb->declare(command);
        limit(command, help.words);
        command.fallthrough();
        command.group("Verbs");
        command.set_help_flag("-h,--help", "Print this help and exit");
        command.footer(footerOf(help));
        command.final_callback([this, &verb] { m_chosen = verb.get(); });
    }
}

manual::Grammar CommandLine::grammar() const {
    std::map<std::string, VerbHelp> helps;
    for (const std::unique_ptr<Verb>& verb : m_verbs) {
        helps.emplace(verb->name(), verb->help());
    }
    return manual::grammarOf(m_app, CommonWords, helps);
}

std::string CommandLine::parse(int argc, const char* const* argv) {
    try {
        std::vector<std::string> arguments = markedArguments(argc, argv);
        m_app.parse(std::move(arguments));
        return {};
    } catch (const CLI::CallForVersion& version) {
        return std::string(version.what()) + '\n';
    } catch (const CLI::CallForHelp&) {
        return m_app.help();
    } catch (const CLI::ParseError& error) {
        throw usageError(complaint(error));
    }
}

std::string CommandLine::complaint(const CLI::ParseError& error) const {
    const std::vector<CLI::App*> chosen = m_app.get_subcommands();
    if (!chosen.empty()) {
        const std::string name = chosen.front()->get_name();
        return fmt::format("{}: {} (see jstore {} --help)", name, withoutMarks(reasonOf(error, m_app)), name);
    }
    const std::vector<std::string> rest = m_app.remaining();
    if (!rest.empty() && !rest.front().starts_with('-')) {
        return fmt::format("unknown verb {} (see jstore --help)", withoutMarks(rest.front()));
    }
    const bool noVerb = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr && rest.empty();
    return noVerb ? "a verb is missing (see jstore --help)"
                  : fmt::format("{} (see jstore --help)", withoutMarks(reasonOf(error, m_app)));
}

}  // namespace jstore
