// Measures one part of what happens inside a process, and writes its rows.
#include <fmt/core.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <map>
#include <string>

#include "InstructionCounter.h"
#include "parts/Parts.h"

namespace {

using MeasurePart = std::vector<bench::Row> (*)(const bench::Effort&);

const std::map<std::string, MeasurePart> Parts = {
    {"operations", bench::measureOperations}, {"listings", bench::measureListings}, {"streams", bench::measureStreams},
    {"errors", bench::measureErrors},         {"events", bench::measureEvents},     {"pieces", bench::measurePieces},
    {"attachment", bench::measureAttachment}, {"threads", bench::measureThreads},   {"log", bench::measureLogLevels},
    {"memory", bench::measureMemory},         {"counts", bench::measureCounts},
};

/// The exit code when this computer cannot measure the part.
constexpr int Unsupported = 77;

struct Arguments {
    std::string part;
    std::filesystem::path output;
    int rounds = bench::Effort{}.rounds;
    bool smoke = false;
};

bench::Effort effortOf(const Arguments& arguments) {
    if (arguments.smoke) {
        return bench::Effort::none();
    }
    bench::Effort effort;
    effort.rounds = arguments.rounds;
    return effort;
}

}  // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    CLI::App app("Measures the library's operations beside their floors.");
    app.add_option("part", arguments.part, "What to measure")->required()->check(CLI::IsMember(Parts));
    app.add_option("output", arguments.output, "Where the rows go, as JSON")->required();
    app.add_option("--rounds", arguments.rounds, "Samples of each side")->check(CLI::PositiveNumber);
    app.add_flag("--smoke", arguments.smoke, "Run everything once and measure nothing");
    CLI11_PARSE(app, argc, argv);
    try {
        bench::writeRows(arguments.output, Parts.at(arguments.part)(effortOf(arguments)));
        return 0;
    } catch (const bench::NoInstructionCounter& error) {
        fmt::print(stderr, "{}: {}\n", arguments.part, error.what());
        return Unsupported;
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}: {}\n", arguments.part, error.what());
        return 1;
    }
}
