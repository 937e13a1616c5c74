#include "report/Chart.h"

#include <fmt/core.h>

#include <algorithm>

#include "report/Figures.h"
#include "report/Svg.h"

namespace bench {

namespace {

using Role = Svg::Role;
using Align = Svg::Align;

constexpr int Width = 880;
constexpr double LabelEnd = 290;
constexpr double BarStart = 300;
constexpr double BarWidth = 330;
constexpr double FiguresEnd = Width - 16;
constexpr double RowHeight = 22;
constexpr double BarHeight = 13;
constexpr double TitleHeight = 44;
constexpr double GroupHeight = 30;
constexpr double FootHeight = 34;

/// Rows of one group, and where the ratio 1 and the end of the bars lie.
class GroupScale {
public:
    explicit GroupScale(const std::vector<Row>& rows) {
        for (const Row& row : rows) {
            m_largest = std::max({m_largest, row.ratio(), row.target.value_or(0)});
        }
    }
    [[nodiscard]] double at(double ratio) const { return BarStart + BarWidth * ratio / (m_largest * 1.04); }

private:
    double m_largest = 1;
};

void drawBar(Svg& svg, const Row& row, const GroupScale& scale, double top) {
    const double floorEnd = scale.at(std::min(1.0, row.ratio()));
    svg.rectangle(BarStart, top, floorEnd - BarStart, BarHeight, Role::Floor);
    if (row.ratio() > 1) {
        const Role role = row.met() ? Role::Above : Role::Missed;
        svg.rectangle(floorEnd, top, scale.at(row.ratio()) - floorEnd, BarHeight, role);
    }
    if (row.target) {
        svg.line(scale.at(*row.target), top - 3, scale.at(*row.target), top + BarHeight + 3, Role::Target);
    }
}

void drawRow(Svg& svg, const Row& row, const GroupScale& scale, double top) {
    const double baseLine = top + BarHeight - 2;
    svg.text(LabelEnd, baseLine, row.name, Role::Ink, Align::Right);
    drawBar(svg, row, scale, top);
    const std::string figures = fmt::format("× {}   {} → {}", formatRatio(row.ratio()),
                                            formatFigure(row.floor, row.unit), formatFigure(row.bridge, row.unit));
    svg.text(FiguresEnd, baseLine, figures, Role::Muted, Align::Right);
}

double drawGroup(Svg& svg, const std::vector<Row>& rows, double top) {
    const GroupScale scale(rows);
    svg.text(16, top + 18, rows.front().group, Role::Ink, Align::Left, 13);
    top += GroupHeight;
    const double bottom = top + RowHeight * static_cast<double>(rows.size());
    svg.line(scale.at(1), top - 4, scale.at(1), bottom - 4, Role::Grid);
    for (const Row& row : rows) {
        drawRow(svg, row, scale, top);
        top += RowHeight;
    }
    return bottom;
}

std::vector<std::vector<Row>> byGroup(const std::vector<Row>& rows) {
    std::vector<std::vector<Row>> groups;
    for (const Row& row : rows) {
        if (groups.empty() || groups.back().front().group != row.group) {
            groups.emplace_back();
        }
        groups.back().push_back(row);
    }
    return groups;
}

}  // namespace

std::string drawChart(std::string_view title, const std::vector<Row>& rows) {
    const auto groups = byGroup(rows);
    const double height = TitleHeight + GroupHeight * static_cast<double>(groups.size()) +
                          RowHeight * static_cast<double>(rows.size()) + FootHeight;
    Svg svg(Width, static_cast<int>(height), title);
    svg.text(16, 28, title, Role::Ink, Align::Left, 16);
    double top = TitleHeight;
    for (const auto& group : groups) {
        top = drawGroup(svg, group, top);
    }
    svg.text(16, top + 22,
             "grey: what it is compared with; blue: on top of that; red: on top, and above the target; green: target",
             Role::Muted, Align::Left, 11);
    return svg.finish();
}

}  // namespace bench
