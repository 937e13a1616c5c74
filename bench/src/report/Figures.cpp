#include "report/Figures.h"

#include <fmt/core.h>

#include <array>

namespace bench {

namespace {

struct Scale {
    double one;
    const char* name;
};

template <std::size_t Count>
std::string scaled(double value, const std::array<Scale, Count>& scales) {
    std::size_t i = 0;
    while (i + 1 < Count && value >= scales[i + 1].one) {
        ++i;
    }
    const double figure = value / scales[i].one;
    return fmt::format("{:.{}f} {}", figure, figure < 10 ? 2 : (figure < 100 ? 1 : 0), scales[i].name);
}

}  // namespace

std::string formatFigure(double value, Unit unit) {
    static constexpr std::array<Scale, 4> Times = {{{1, "ns"}, {1e3, "µs"}, {1e6, "ms"}, {1e9, "s"}}};
    static constexpr std::array<Scale, 3> Sizes = {{{1, "B"}, {1024, "KiB"}, {1024 * 1024, "MiB"}}};
    switch (unit) {
        case Unit::Bytes:
            return scaled(value, Sizes);
        case Unit::Instructions:
            return fmt::format("{:.0f}", value);
        default:
            return scaled(value, Times);
    }
}

std::string formatRatio(double ratio) { return fmt::format("{:.{}f}", ratio, ratio < 10 ? 2 : 1); }

std::string formatBare(const Row& row) { return row.bare ? formatFigure(*row.bare, row.unit) : "–"; }

std::string formatTarget(const Row& row) { return row.target ? formatRatio(*row.target) : "–"; }

std::string verdict(const Row& row) {
    if (!row.target) {
        return "–";
    }
    return row.met() ? "met" : "missed";
}

}  // namespace bench
