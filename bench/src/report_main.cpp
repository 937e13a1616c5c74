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
    std::optional<std::filesystem::path> readme;
    std::string heading;
};

void writeReport(const std::filesystem::path& file, const std::vector<bench::Row>& rows) {
    std::ofstream out(file);
    out << bench::formatJson(rows);
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

void updateDocs(const Arguments& arguments, const std::vector<bench::Row>& rows) {
    if (!bench::isComplete(arguments.parts)) {
        fmt::print(stderr, "The documentation stays as it is: not all parts were measured.\n");
        return;
    }
    if (arguments.docs) {
        bench::writeCharts(*arguments.docs, rows);
        const std::string heading = arguments.heading.empty() ? "" : "\n" + arguments.heading + "\n";
        bench::replaceFigures(*arguments.docs / "performance.md", heading + bench::formatMarkdown(rows) + "\n");
    }
    if (arguments.readme) {
        bench::replaceFigures(*arguments.readme, bench::formatHeadline(rows));
    }
}

void run(const Arguments& arguments) {
    const std::vector<bench::Row> rows = bench::collectRows(arguments.parts);
    writeReport(arguments.report, rows);
    fmt::print("{}", bench::formatTable(rows));
    if (arguments.docs || arguments.readme) {
        updateDocs(arguments, rows);
    }
}

}  // namespace

int main(int argc, char** argv) {
    Arguments arguments;
    CLI::App app("Makes the report of what was measured.");
    app.add_option("parts", arguments.parts, "The folder with the rows of the parts")->required();
    app.add_option("report", arguments.report, "Where the report goes, as JSON")->required();
    app.add_option("--docs", arguments.docs, "The folder whose charts and figures are brought up to date");
    app.add_option("--readme", arguments.readme, "The document whose two headline figures are brought up to date");
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
