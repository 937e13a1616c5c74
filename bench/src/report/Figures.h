#pragma once

#include <string>

#include "Row.h"

namespace bench {

// Figures as people read them, the same in table, charts and document.

/// With its unit and three digits or so: "417 ns", "29.9 µs", "1.2 s", "74 MiB"; instructions as a plain number.
[[nodiscard]] std::string formatFigure(double value, Unit unit);
/// The figure of the floor that keeps everything it needs, or a dash where there is none.
[[nodiscard]] std::string formatBare(const Row& row);
/// "1.15".
[[nodiscard]] std::string formatRatio(double ratio);
/// "1.15", or a dash for a row without a target.
[[nodiscard]] std::string formatTarget(const Row& row);
/// "met", "missed", or a dash for a row without a target.
[[nodiscard]] std::string verdict(const Row& row);

}  // namespace bench
