// Makes the report of all parts that were measured: a table on standard output, a JSON file, and on demand the charts
// and the figures of the documentation.
#include <fmt/core.h>
#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <fstream>
#include <optional>
#include <string>

#include "report/Report.h"

namespace {

struct Arguments {
    std::filesystem::path parts;
    std::filesystem::path report;
    std::optional<std::filesystem::path> docs;
    std::string heading;
};

void run(const Arguments& arguments) {
    const std::vector<bench::Row> rows = bench::collectRows(arguments.parts);
    std::ofstream out(arguments.report);
    out << bench::formatJson(rows);
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write " + arguments.report.string());
    }
    if (arguments.docs) {
        bench::writeCharts(*arguments.docs, rows);
        const std::string heading = arguments.heading.empty() ? "" : "\n" + arguments.heading + "\n";
        bench::replaceFigures(*arguments.docs / "performance.md", heading + bench::formatMarkdown(rows) + "\n");
    }
    fmt::print("{}", bench::formatTable(rows));
}

}  // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    CLI::App app("Makes the report of what was measured.");
    app.add_option("parts", arguments.parts, "The folder with the rows of the parts")->required();
    app.add_option("report", arguments.report, "Where the report goes, as JSON")->required();
    app.add_option("--docs", arguments.docs, "The folder whose charts and figures are brought up to date");
    app.add_option("--heading", arguments.heading, "A line on the computer, above the figures of the documentation");
    CLI11_PARSE(app, argc, argv);
    try {
        run(arguments);
        return 0;
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
}
