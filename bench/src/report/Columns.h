#pragma once

#include <string_view>

namespace bench {

/// How a group's two figures are headed.
struct Columns {
    std::string_view group;
    std::string_view reference;  ///< what Row::floor holds in this group
    std::string_view measured;   ///< what Row::bridge holds in this group
    bool hasBare = false;        ///< whether the group has a column for the bare floor
};

/// The headings of a group. One without headings of its own compares the library with the hand-written floor.
[[nodiscard]] Columns columnsOf(std::string_view group);

}  // namespace bench
