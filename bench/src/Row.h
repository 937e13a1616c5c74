#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace bench {

/// How the two figures of a row are to be read.
enum class Unit { Nanoseconds, Bytes, Instructions };

/// "ns", "bytes", "instructions".
[[nodiscard]] const char* unitName(Unit unit);

/// One measured comparison.
struct Row {
    std::string name;
    std::string group;              ///< rows of a group stand together in the table and in a chart
    Unit unit = Unit::Nanoseconds;  ///< of `floor` and `bridge`
    double floor = 0;              ///< what it is compared with: the hand-written floor unless columnsOf(group) differs
    double bridge = 0;             ///< what the library or the program takes
    std::optional<double> bare{};  ///< the floor that keeps everything it needs, where there is one
    std::optional<double> target{};  ///< the ratio must not be above it; nothing where there is only a figure
    double ratioLow = 0;             ///< quartiles of the ratios of the single rounds
    double ratioHigh = 0;

    [[nodiscard]] double ratio() const noexcept { return bridge / floor; }
    [[nodiscard]] bool met() const noexcept { return !target || ratio() <= *target; }
};

/// Writes the rows of one part of the measurement; replaces the file. Throws std::runtime_error when it cannot.
void writeRows(const std::filesystem::path& file, const std::vector<Row>& rows);

/// The rows that writeRows() wrote. Throws std::runtime_error when the file is not there or not whole.
[[nodiscard]] std::vector<Row> readRows(const std::filesystem::path& file);

}  // namespace bench
