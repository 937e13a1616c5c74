#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Row.h"

namespace bench {

/// The rows as horizontal bars of their ratios, group by group, each group to a scale of its own: the floor's share in
/// grey, what comes on top of it in blue, or red where the target is missed, and the target as a green mark. SVG text.
[[nodiscard]] std::string drawChart(std::string_view title, const std::vector<Row>& rows);

}  // namespace bench
