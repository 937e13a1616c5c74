#include "watch/Watching.h"

#include <charconv>
#include <cstdint>
#include <optional>

#include "base/Text.h"
#include "options/Arguments.h"
#include "options/HelpText.h"
#include "verbs/Duration.h"
#include "verbs/Verb.h"

namespace jstore {

namespace {

class Watch final : public Verb {
public:
    CLI::App& declare(CLI::App& commandLine) override {
        auto& verb = *commandLine.add_subcommand("watch", "Tell what happens to files and folders, as it happens");
        addArguments(verb, "LOCATION...", m_arguments, "The files and folders to watch");
        verb.add_flag("-r,--recursive", m_options.recursive, "Tell of everything below a folder");
        verb.add_flag("-t,--time", m_options.times, "Begin each line with the time (UTC)");
        verb.add_option("--for", m_duration, "End after that time: 500ms, 10s, 2m, 1h")->type_name("TIME");
        verb.add_option("--count", m_count, "End after N events")->type_name("N");
        verb.add_option("--exec", m_options.command, "Run a shell command for each event")->type_name("CMD");
        verb.footer(helpText(
            "Once a location is watched, \"jstore: watching LOCATION\" appears on standard error; nothing is\n"
            "missed from then on. Each event is a line: ChildAdded, ChildModified, ChildRemoved, SelfModified\n"
            "or SelfRemoved, then file or folder, then the location. A rename is a removal and an addition.\n"
            "\n"
            "CMD finds JSTORE_EVENT, JSTORE_TYPE, JSTORE_LOCATION, JSTORE_WATCHED, JSTORE_TIME and\n"
            "JSTORE_ORIGIN in its environment, as in --exec 'echo \"$JSTORE_LOCATION\"'. Commands run one at a\n"
            "time, in order, while events queue up; one that fails is told of, and the watch goes on and\n"
            "ends with 1.\n"
            "\n"
            "Ends with 0 after --for or --count, with 130 after Ctrl-C, with 3 when all that is watched is\n"
            "gone, with 8 when the back end tells of no changes.",
            {"jstore watch -r --for 1s photos",
             "jstore watch --for 1s --exec 'echo \"$JSTORE_LOCATION\" >>changes' photos"}));
        return verb;
    }

    ExitCode run(Context& context) override {
        readLimits();
        const auto locations = toLocations(m_arguments);
        static_cast<void>(context.provider());
        return Watching(context, locations, m_options).run();
    }

private:
    void readLimits() {
        if (m_duration) {
            const auto text = unmarked(*m_duration);
            m_options.duration = parseDuration(text);
            if (!m_options.duration) {
                throw usageError("watch: --for " + printable(text) + ": expected a time such as 500ms, 10s, 2m or 1h");
            }
        }
        if (m_count) {
            const auto text = unmarked(*m_count);
            m_options.count = parseCount(text);
            if (!m_options.count) {
                throw usageError("watch: --count " + printable(text) + ": expected a number from 1 on");
            }
        }
        if (m_options.command) {
            m_options.command = unmarked(*m_options.command);
        }
    }

    static std::optional<std::uint64_t> parseCount(const std::string& text) {
        std::uint64_t count = 0;
        const auto* const end = text.data() + text.size();
        const auto read = std::from_chars(text.data(), end, count);
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
