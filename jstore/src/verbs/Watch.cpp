#include "watch/Watching.h"

#include <charconv>
#include <cstdint>
#include <optional>

#include "base/Text.h"
#include "options/Arguments.h"
#include "verbs/Duration.h"
#include "verbs/Verb.h"
#include "work/ForEachLocation.h"

namespace jstore {

namespace {

class Watch final : public Verb {
public:
    [[nodiscard]] std::string name() const override { return "watch"; }

    [[nodiscard]] VerbHelp help() const override {
        return {.summary = "Report changes to files and folders as they happen",
                .text =
                    "Once a location is watched, \"jstore: watching LOCATION\" appears on standard error. From then\n"
                    "on, each change is printed as a line: ChildAdded, ChildModified, ChildRemoved, SelfModified or\n"
                    "SelfRemoved, then file or folder, then the location. A rename is reported as a removal and an\n"
                    "addition.\n"
                    "\n"
                    "CMD finds the event in its environment: JSTORE_EVENT, JSTORE_TYPE, JSTORE_LOCATION,\n"
                    "JSTORE_WATCHED, JSTORE_TIME and JSTORE_ORIGIN, as in --exec 'echo \"$JSTORE_LOCATION\"'.\n"
                    "Commands run one at a time, in order; further events wait. A command that fails is reported;\n"
                    "the watch goes on, and its exit code is then 1.\n"
                    "\n"
                    "The exit code is 0 after --for or --count, 130 after Ctrl-C, 3 when everything watched was\n"
                    "removed, and 8 if the back end does not report changes.",
                .examples = {"jstore watch -r --for 1s photos",
                             "jstore watch --for 1s --exec 'echo \"$JSTORE_LOCATION\" >>changes' photos"}};
    }

    void declare(CLI::App& command) override {
        addArguments(command, "LOCATION...", m_arguments, "Files and folders to watch");
        command.add_flag("-r,--recursive", m_options.recursive, "Report everything below a folder");
        command.add_flag("-t,--time", m_options.times, "Begin each line with the time (UTC)");
        command.add_option("--for", m_duration, "End after this time: 500ms, 10s, 2m, 1h")->type_name("TIME");
        command.add_option("--count", m_count, "End after N events")->type_name("N");
        command.add_option("--exec", m_options.command, "Run a shell command for each event")->type_name("CMD");
    }

    ExitCode run(Context& context) override {
        readLimits();
        return Watching(context, startWith(context, m_arguments), m_options).run();
    }

private:
    void readLimits() {
        if (m_duration) {
            const std::string text = unmarked(*m_duration);
            m_options.duration = parseDuration(text);
            if (!m_options.duration) {
                throw usageError("watch: --for " + printable(text) + ": expected a time such as 500ms, 10s, 2m or 1h");
            }
        }
        if (m_count) {
            const std::string text = unmarked(*m_count);
            m_options.count = parseCount(text);
            if (!m_options.count) {
                throw usageError("watch: --count " + printable(text) + ": expected a whole number, 1 or more");
            }
        }
        if (m_options.command) {
            m_options.command = unmarked(*m_options.command);
        }
    }

    static std::optional<std::uint64_t> parseCount(const std::string& text) {
        std::uint64_t count = 0;
        const char* const end = text.data() + text.size();
        const std::from_chars_result read = std::from_chars(text.data(), end, count);
        const bool isCount = read.ec == std::errc() && read.ptr == end && count > 0;
        return isCount ? std::optional(count) : std::nullopt;
    }

    std::vector<std::string> m_arguments;
    WatchOptions m_options;
    std::optional<std::string> m_duration;
    std::optional<std::string> m_count;
};

}  // namespace

std::unique_ptr<Verb> makeWatch() { return std::make_unique<Watch>(); }

}  // namespace jstore
