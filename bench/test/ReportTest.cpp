#include "report/Report.h"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

#include "Samples.h"
#include "report/Chart.h"
#include "report/Figures.h"

namespace bench {

namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

Row row(const char* name, double floor, double bridge, std::optional<double> target) {
    Row result;
    result.name = name;
    result.group = "operations";
    result.floor = floor;
    result.bridge = bridge;
    result.target = target;
    return result;
}

class ReportTest : public ::testing::Test {
protected:
    ReportTest() {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
    }
    ~ReportTest() override { fs::remove_all(m_folder); }

    void write(const char* name, const std::string& text) const { std::ofstream(m_folder / name) << text; }
    [[nodiscard]] std::string read(const char* name) const {
        std::ostringstream text;
        text << std::ifstream(m_folder / name).rdbuf();
        return text.str();
    }

    fs::path m_folder = fs::path(::testing::TempDir()) / "bench-report-test";
};

TEST(SamplesTest, MedianOfAnEvenNumberLiesBetweenTheMiddleTwo) { EXPECT_DOUBLE_EQ(median({4, 1, 3, 2}), 2.5); }

TEST(SamplesTest, QuartilesLeaveAQuarterOnTheirSide) {
    EXPECT_DOUBLE_EQ(quantile({5, 1, 4, 2, 3}, 0.25), 2);
    EXPECT_DOUBLE_EQ(quantile({5, 1, 4, 2, 3}, 0.75), 4);
}

TEST(SamplesTest, RatiosAreThoseOfEachRound) {
    const Rounds rounds{{100, 200}, {110, 300}};
    EXPECT_THAT(rounds.ratios(), ElementsAre(DoubleNear(1.1, 1e-12), DoubleNear(1.5, 1e-12)));
}

TEST_F(ReportTest, RowsSurviveTheirFile) {
    Row written = row("listAll/1000", 100.5, 103.25, 1.05);
    written.unit = Unit::Bytes;
    written.ratioLow = 1.01;
    written.ratioHigh = 1.04;
    written.bare = 98.5;
    writeRows(m_folder / "listings.json", {written, row("plain", 1, 2, std::nullopt)});
    const std::vector<Row> rows = readRows(m_folder / "listings.json");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].name, written.name);
    EXPECT_EQ(rows[0].unit, Unit::Bytes);
    EXPECT_EQ(rows[0].floor, 100.5);
    EXPECT_EQ(rows[0].bridge, 103.25);
    EXPECT_EQ(rows[0].bare, 98.5);
    EXPECT_EQ(rows[0].target, 1.05);
    EXPECT_EQ(rows[0].ratioLow, 1.01);
    EXPECT_EQ(rows[0].ratioHigh, 1.04);
    EXPECT_EQ(rows[1].target, std::nullopt);
    EXPECT_EQ(rows[1].bare, std::nullopt);
}

TEST_F(ReportTest, UnitsSurviveTheirFile) {
    Row counted = row("counted", 1, 2, std::nullopt);
    counted.unit = Unit::Instructions;
    writeRows(m_folder / "counts.json", {counted, row("timed", 1, 2, std::nullopt)});
    const std::vector<Row> rows = readRows(m_folder / "counts.json");
    EXPECT_EQ(rows.at(0).unit, Unit::Instructions);
    EXPECT_EQ(rows.at(1).unit, Unit::Nanoseconds);
    write("odd.json", R"([{"name": "n", "group": "g", "unit": "miles"}])");
    EXPECT_THROW(static_cast<void>(readRows(m_folder / "odd.json")), std::runtime_error);
}

TEST_F(ReportTest, MissingRowsAreAnError) {
    EXPECT_THROW(static_cast<void>(readRows(m_folder / "nothing.json")), std::runtime_error);
}

TEST_F(ReportTest, PartsComeInTheOrderOfTheReport) {
    writeRows(m_folder / "copy.json", {row("last", 1, 1, std::nullopt)});
    writeRows(m_folder / "operations.json", {row("first", 1, 1, std::nullopt)});
    const std::vector<Row> rows = collectRows(m_folder);
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].name, "first");
    EXPECT_EQ(rows[1].name, "last");
}

TEST_F(ReportTest, FolderIsCompleteWithAllParts) {
    for (const char* part : {"operations", "listings", "streams", "errors", "events", "pieces", "attachment", "threads",
                             "log", "memory", "startup"}) {
        writeRows(m_folder / (std::string(part) + ".json"), {});
    }
    EXPECT_FALSE(isComplete(m_folder));
    writeRows(m_folder / "copy.json", {});
    EXPECT_TRUE(isComplete(m_folder));
}

TEST_F(ReportTest, PartThatNobodyKnowsIsAnError) {
    writeRows(m_folder / "mystery.json", {});
    EXPECT_THROW(static_cast<void>(collectRows(m_folder)), std::runtime_error);
}

TEST(ReportTextTest, JsonHoldsTheFiguresOfEachName) {
    Row memory = row("listing", 1000, 1200, 1.3);
    memory.unit = Unit::Bytes;
    Row exists = row("fileExists", 400, 440, 1.15);
    exists.bare = 350;
    const auto json = nlohmann::json::parse(formatJson({exists, row("plain", 10, 20, {}), memory}));
    EXPECT_EQ(json, nlohmann::json::parse(R"({
        "fileExists": {"floor_ns": 400.0, "bridge_ns": 440.0, "ratio": 1.1, "target": 1.15, "bare_ns": 350.0},
        "plain": {"floor_ns": 10.0, "bridge_ns": 20.0, "ratio": 2.0, "target": null},
        "listing": {"floor_bytes": 1000.0, "bridge_bytes": 1200.0, "ratio": 1.2, "target": 1.3}})"));
}

TEST(ReportTextTest, HeadlineTellsTwoRatios) {
    const std::vector<Row> rows = {row("fileExists", 400, 440, 1.15), row("listAll/100000", 100, 99, 1.05)};
    EXPECT_EQ(formatHeadline(rows),
              "An existence test takes **1.10** times as long as its floor, an entry in a listing of 100,000 **0.99** "
              "times.\n");
    EXPECT_THROW(static_cast<void>(formatHeadline({rows[0]})), std::runtime_error);
}

TEST(ReportTextTest, TablesShowTheBareFloorWhereThereIsOne) {
    Row exists = row("fileExists", 400, 440, 1.15);
    EXPECT_THAT(formatMarkdown({exists}), HasSubstr("| `fileExists` | – | 400 ns | 440 ns |"));
    exists.bare = 350;
    EXPECT_THAT(formatMarkdown({exists}), HasSubstr("| `fileExists` | 350 ns | 400 ns | 440 ns |"));
    EXPECT_THAT(formatTable({exists}), HasSubstr("350 ns"));
}

TEST(ReportTextTest, GroupsWithoutAFloorSayWhatTheyCompare) {
    EXPECT_THAT(formatMarkdown({row("fileExists", 400, 440, 1.15)}),
                HasSubstr("| operations | bare | floor | bridge |"));
    Row copy = row("jstore cp", 500, 600, {});
    copy.group = "copies";
    EXPECT_THAT(formatMarkdown({copy}), AllOf(HasSubstr("\n| copies | cp | jstore | ratio |"),
                                              HasSubstr("\n|---|---:|---:|---:|---:|---:|---|\n"),
                                              HasSubstr("\n| `jstore cp` | 500 ns | 600 ns | 1.20 |")));
}

TEST(ReportTextTest, TableTellsWhetherTheTargetIsMet) {
    EXPECT_THAT(formatTable({row("fast", 400, 440, 1.15)}), AllOf(HasSubstr("met"), Not(HasSubstr("missed"))));
    EXPECT_THAT(formatTable({row("slow", 400, 480, 1.15)}), HasSubstr("missed"));
    EXPECT_THAT(formatTable({row("free", 400, 480, {})}), AllOf(Not(HasSubstr("met")), Not(HasSubstr("missed"))));
}

TEST(ReportTextTest, FiguresHaveTheUnitThatFitsThem) {
    EXPECT_EQ(formatFigure(417.3, Unit::Nanoseconds), "417 ns");
    EXPECT_EQ(formatFigure(29'861, Unit::Nanoseconds), "29.9 µs");
    EXPECT_EQ(formatFigure(1.25e9, Unit::Nanoseconds), "1.25 s");
    EXPECT_EQ(formatFigure(74.0 * 1024 * 1024, Unit::Bytes), "74.0 MiB");
    EXPECT_EQ(formatFigure(5349.2, Unit::Instructions), "5349");
}

TEST(ChartTest, MissedTargetHasAColourOfItsOwn) {
    EXPECT_THAT(drawChart("title", {row("slow", 400, 480, 1.15)}), HasSubstr("<rect class=\"missed\""));
    EXPECT_THAT(drawChart("title", {row("fast", 400, 440, 1.15)}), Not(HasSubstr("<rect class=\"missed\"")));
}

TEST(ChartTest, TextIsEscaped) {
    EXPECT_THAT(drawChart("a < b & c", {row("x", 1, 1, {})}), HasSubstr("a &lt; b &amp; c"));
}

TEST(ChartTest, DarkPagesHaveColoursOfTheirOwn) {
    EXPECT_THAT(drawChart("title", {row("x", 1, 1, {})}), HasSubstr("prefers-color-scheme: dark"));
}

TEST_F(ReportTest, FiguresReplaceThoseBetweenTheMarksAlone) {
    write("page.md", "before\n<!-- figures: begin -->\nold\n<!-- figures: end -->\nafter\n");
    replaceFigures(m_folder / "page.md", "new\n");
    EXPECT_EQ(read("page.md"), "before\n<!-- figures: begin -->\nnew\n<!-- figures: end -->\nafter\n");
}

TEST_F(ReportTest, DocumentWithoutMarksIsAnErrorAndStays) {
    write("page.md", "no place\n");
    EXPECT_THROW(replaceFigures(m_folder / "page.md", "new\n"), std::runtime_error);
    EXPECT_EQ(read("page.md"), "no place\n");
}

TEST_F(ReportTest, ChartWithoutRowsIsLeftAsItIs) {
    write("performance-programs.svg", "drawn before");
    writeCharts(m_folder, {row("fileExists", 400, 440, 1.15)});
    EXPECT_EQ(read("performance-programs.svg"), "drawn before");
    EXPECT_THAT(read("performance-operations.svg"), HasSubstr("fileExists"));
}

}  // namespace

}  // namespace bench
