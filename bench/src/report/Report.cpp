#include "report/Report.h"

#include <fmt/core.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

#include "report/Chart.h"
#include "report/Columns.h"
#include "report/Figures.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

constexpr std::array Parts = {"operations", "listings", "streams", "errors", "events",  "pieces", "counts",
                              "attachment", "threads",  "log",     "memory", "startup", "copy"};

/// Not every computer counts instructions.
constexpr std::string_view OptionalPart = "counts";

constexpr std::string_view BeginMark = "<!-- figures: begin -->\n";
constexpr std::string_view EndMark = "<!-- figures: end -->";

struct ChartPlan {
    const char* file;
    const char* title;
    std::vector<std::string> groups;
};

const std::array<ChartPlan, 3>& chartPlans() {
    static const std::array<ChartPlan, 3> plans = {
        {{"performance-operations.svg",
          "Operations of the library beside their hand-written floors",
          {"operations", "listings", "streams", "errors", "events", "pieces"}},
         {"performance-conditions.svg",
          "What threads and the log add to an operation",
          {"attachment", "threads", "log levels"}},
         {"performance-programs.svg",
          "Memory of a listing, and jstore beside the programs that people know",
          {"memory", "start-up", "copies"}}}};
    return plans;
}

void writeText(const fs::path& file, std::string_view text) {
    std::ofstream out(file, std::ios::binary);
    out << text;
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

std::string readText(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return text.str();
}

void requireKnownParts(const fs::path& folder) {
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (std::find(Parts.begin(), Parts.end(), entry.path().stem().string()) == Parts.end()) {
            throw std::runtime_error("no part of the measurement: " + entry.path().string());
        }
    }
}

/// As many blanks as the text is narrower than the column; a character counts one column, whatever its bytes.
std::string padded(const std::string& text, std::size_t width, bool right) {
    const auto columns = static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
    const std::string blanks(columns < width ? width - columns : 0, ' ');
    return right ? blanks + text : text + blanks;
}

std::string markdownHeading(const Columns& columns) {
    return fmt::format(
        "\n| {} | {}{} | {} | ratio | middle half | target | |\n"
        "|---|{}---:|---:|---:|---:|---:|---|\n",
        columns.group, columns.hasBare ? "bare | " : "", columns.reference, columns.measured,
        columns.hasBare ? "---:|" : "");
}

}  // namespace

bool isComplete(const fs::path& parts) {
    return std::all_of(Parts.begin(), Parts.end(), [&parts](const char* part) {
        return part == OptionalPart || fs::exists(parts / (std::string(part) + ".json"));
    });
}

std::vector<Row> collectRows(const fs::path& parts) {
    requireKnownParts(parts);
    std::vector<Row> rows;
    for (const char* part : Parts) {
        const fs::path file = parts / (std::string(part) + ".json");
        if (fs::exists(file)) {
            const std::vector<Row> more = readRows(file);
            rows.insert(rows.end(), more.begin(), more.end());
        }
    }
    return rows;
}

std::string formatTable(const std::vector<Row>& rows) {
    std::string table;
    const auto addLine = [&table](const std::array<std::string, 7>& cells) {
        constexpr std::array<std::size_t, 6> Widths = {42, 9, 9, 9, 6, 6};
        for (std::size_t i = 0; i < Widths.size(); ++i) {
            table += padded(cells[i], Widths[i], /*right=*/i > 0) + "  ";
        }
        table += cells[6] + "\n";
    };
    addLine({"name", "bare", "reference", "measured", "ratio", "target", "verdict"});
    for (const Row& row : rows) {
        addLine({row.name, formatBare(row), formatFigure(row.floor, row.unit), formatFigure(row.bridge, row.unit),
                 formatRatio(row.ratio()), formatTarget(row), verdict(row)});
    }
    return table;
}

std::string formatMarkdown(const std::vector<Row>& rows) {
    std::string text;
    std::string group;
    for (const Row& row : rows) {
        if (row.group != group) {
            group = row.group;
            text += markdownHeading(columnsOf(group));
        }
        const std::string bare = columnsOf(group).hasBare ? formatBare(row) + " | " : "";
        text +=
            fmt::format("| `{}` | {}{} | {} | {} | {}–{} | {} | {} |\n", row.name, bare,
                        formatFigure(row.floor, row.unit), formatFigure(row.bridge, row.unit), formatRatio(row.ratio()),
                        formatRatio(row.ratioLow), formatRatio(row.ratioHigh), formatTarget(row), verdict(row));
    }
    return text;
}

std::string formatHeadline(const std::vector<Row>& rows) {
    const auto ratioOf = [&rows](std::string_view name) {
        const auto row = std::find_if(rows.begin(), rows.end(), [name](const Row& one) { return one.name == name; });
        if (row == rows.end()) {
            throw std::runtime_error("no figure of " + std::string(name));
        }
        return formatRatio(row->ratio());
    };
    return fmt::format(
        "An existence test takes **{}** times as long as its floor, an entry in a listing of 100,000 **{}** times.\n",
        ratioOf("fileExists"), ratioOf("listAll/100000"));
}

std::string formatJson(const std::vector<Row>& rows) {
    nlohmann::ordered_json report = nlohmann::ordered_json::object();
    for (const Row& row : rows) {
        const std::string unit = std::string("_") + unitName(row.unit);
        auto& figures = report[row.name];
        figures = {{"floor" + unit, row.floor}, {"bridge" + unit, row.bridge}, {"ratio", row.ratio()}};
        figures["target"] = row.target ? nlohmann::ordered_json(*row.target) : nullptr;
        if (row.bare) {
            figures["bare" + unit] = *row.bare;
        }
    }
    return report.dump(2) + "\n";
}

void writeCharts(const fs::path& folder, const std::vector<Row>& rows) {
    for (const ChartPlan& plan : chartPlans()) {
        std::vector<Row> shown;
        std::copy_if(rows.begin(), rows.end(), std::back_inserter(shown), [&plan](const Row& row) {
            return std::find(plan.groups.begin(), plan.groups.end(), row.group) != plan.groups.end();
        });
        if (!shown.empty()) {
            writeText(folder / plan.file, drawChart(plan.title, shown));
        }
    }
}

void replaceFigures(const fs::path& document, const std::string& text) {
    std::string whole = readText(document);
    const std::size_t begin = whole.find(BeginMark);
    const std::size_t end = whole.find(EndMark);
    if (begin == std::string::npos || end == std::string::npos || end < begin) {
        throw std::runtime_error(document.string() + " has no place for figures");
    }
    whole.replace(begin + BeginMark.size(), end - begin - BeginMark.size(), text);
    writeText(document, whole);
}

}  // namespace bench
