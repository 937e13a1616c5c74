// Measures one part of what whole programs take, and writes its rows.
#include <fmt/core.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <map>
#include <string>

#include "commands/CommandParts.h"

namespace {

using MeasurePart = std::vector<bench::Row> (*)(const bench::Programs&);

const std::map<std::string, MeasurePart> Parts = {{"startup", bench::measureStartUp}, {"copy", bench::measureCopies}};

struct Arguments {
    std::string part;
    std::filesystem::path output;
    std::filesystem::path work;
    int rounds = 20;
    bool smoke = false;
};

/// Measures in a folder of its own below the given one, which is gone afterwards.
void run(const Arguments& arguments) {
    const std::filesystem::path work = std::filesystem::absolute(arguments.work) / ("bench-" + arguments.part);
    std::filesystem::remove_all(work);
    std::filesystem::create_directories(work);
    try {
        const bench::Programs programs{BENCH_JSTORE, BENCH_WORD_JAR, work, arguments.smoke ? 1 : arguments.rounds,
                                       arguments.smoke};
        bench::writeRows(arguments.output, Parts.at(arguments.part)(programs));
    } catch (...) {
        std::filesystem::remove_all(work);
        throw;
    }
    std::filesystem::remove_all(work);
}

}  // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    CLI::App app("Measures jstore beside the programs that people know.");
    app.add_option("part", arguments.part, "What to measure")->required()->check(CLI::IsMember(Parts));
    app.add_option("output", arguments.output, "Where the rows go, as JSON")->required();
    app.add_option("work", arguments.work, "A folder for a few gigabytes")->required();
    app.add_option("--rounds", arguments.rounds, "Runs of each program; copies are run three times at most")
        ->check(CLI::PositiveNumber);
    app.add_flag("--smoke", arguments.smoke, "Run everything once with little data");
    CLI11_PARSE(app, argc, argv);
    try {
        run(arguments);
        return 0;
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}: {}\n", arguments.part, error.what());
        return 1;
    }
}
