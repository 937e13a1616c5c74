#include "CommandLine.h"

#include <fmt/format.h>
#include <CLI/Config.hpp>

#include <map>

#include "base/ExitCode.h"
#include "base/Problem.h"
#include "base/Text.h"
#include "options/Arguments.h"
#include "options/HelpFormatter.h"
#include "options/HelpText.h"

namespace jstore {

namespace {

constexpr const char* Description =
    "Work with files and folders that a Java storage back end holds.\n"
    "\n"
    "A LOCATION is java:///absolute/path, java://MOUNT/path, or a local path. In java:// locations\n"
    "write %23 for # and %3F for ?. Arguments are UTF-8 under every locale, local paths may be any\n"
    "bytes; after -- an argument may begin with a dash.";

const std::map<std::string, LogLevel> LogLevels{{"off", LogLevel::Off},
                                                {"failures", LogLevel::Failures},
                                                {"progress", LogLevel::Progress},
                                                {"trace", LogLevel::Trace}};

/// Adds an option that takes one value each time it is given.
CLI::Option* addOption(CLI::App& app, const char* name, const char* value, std::function<void(std::string)> take,
                       const char* help) {
    const auto takeAll = [take = std::move(take)](const std::vector<std::string>& values) {
        for (const auto& one : values) {
            take(unmarked(one));
        }
    };
    auto* const option = app.add_option_function<std::vector<std::string>>(name, takeAll, help);
    return option->allow_extra_args(false)->type_name(value);
}

std::string className(std::string value) {
    if (value.empty() || !isUtf8(value)) {
        throw usageError("--provider: a class name is expected, such as " + std::string(DefaultProvider));
    }
    return value;
}

}  // namespace

CommandLine::CommandLine() : m_app(Description, "jstore"), m_verbs(allVerbs()) {
    m_app.set_version_flag("--version", std::string("jstore ") + JSTORE_VERSION, "Print the version and end");
    m_app.set_help_flag("-h,--help", "Print this help and end; jstore VERB --help: about a verb");
    m_app.require_subcommand(1);
    m_app.formatter(std::make_shared<HelpFormatter>());
    m_app.footer(exitCodeTable());
    declareOptions();
    declareVerbs();
}

void CommandLine::declareOptions() {
    addOption(
        m_app, "--provider", "CLASS", [this](std::string value) { m_options.provider = className(std::move(value)); },
        "The back end's Java class; default: any file system that Java knows");
    addOption(
        m_app, "--class-path", "P", [this](std::string value) { m_options.classPath.push_back(std::move(value)); },
        "Where classes are looked for first: jars and folders, with colons between");
    addOption(
        m_app, "--mount", "NAME=URI",
        [this](const std::string& value) { m_options.mounts.push_back(parseMount(value)); },
        "Show a folder (a path or file:) or archive (jar:file:) as java://NAME/");
    addOption(
        m_app, "--jvm-option", "O", [this](std::string value) { m_options.jvmOptions.push_back(std::move(value)); },
        "An option of the Java virtual machine, for example -Xmx1g");
    addOption(
        m_app, "--java-home", "PATH", [this](const std::string& value) { m_options.javaHome = value; },
        "Use exactly this Java; else JAVA_HOME, PATH and /usr/lib/jvm are tried");
    addOption(
        m_app, "--log", "LEVEL", [this](const std::string& value) { m_options.logLevel = LogLevels.at(value); },
        "Log to standard error: off, failures, progress or trace")
        ->check(oneOf({"off", "failures", "progress", "trace"}));
    addOption(
        m_app, "--config", "KEY=VALUE",
        [this](const std::string& value) { m_options.settings.push_back(parseSetting(value)); },
        "A setting, such as gds.enableContentCache=true (small files are read once)");
    m_app.add_flag("--json", m_options.json, "Print one JSON object a line for each argument");
    m_app.add_flag_callback(
        "--no-progress", [this] { m_options.progress = false; }, "Draw no progress line on the terminal");
}

void CommandLine::declareVerbs() {
    for (const auto& verb : m_verbs) {
        auto& command = verb->declare(m_app);
        command.fallthrough();
        command.group("Verbs");
        command.set_help_flag("-h,--help", "Print this help and end");
        command.footer(command.get_footer() + "\nThe common options are listed by jstore --help.");
        command.final_callback([this, &verb, &command] {
            m_chosen = verb.get();
            m_chosenName = command.get_name();
        });
    }
}

std::string CommandLine::parse(int argc, const char* const* argv) {
    try {
        auto arguments = markedArguments(argc, argv);
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
    const auto chosen = m_app.get_subcommands();
    if (!chosen.empty()) {
        const auto name = chosen.front()->get_name();
        return fmt::format("{}: {} (see jstore {} --help)", name, withoutMarks(error.what()), name);
    }
    const auto rest = m_app.remaining();
    if (!rest.empty() && !rest.front().starts_with('-')) {
        return fmt::format("no verb is called {} (see jstore --help)", withoutMarks(rest.front()));
    }
    const bool noVerb = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr && rest.empty();
    return noVerb ? "a verb is missing (see jstore --help)"
                  : fmt::format("{} (see jstore --help)", withoutMarks(error.what()));
}

}  // namespace jstore
