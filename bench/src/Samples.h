#pragma once

#include <cstddef>
#include <vector>

namespace bench {

/// The value below which the given part of the samples lies, taken between neighbours where it falls between two.
/// `samples` must not be empty.
[[nodiscard]] double quantile(std::vector<double> samples, double part);

[[nodiscard]] inline double median(const std::vector<double>& samples) { return quantile(samples, 0.5); }

/// What the sides of a comparison took, round by round.
struct Rounds {
    std::vector<double> floor;
    std::vector<double> bridge;
    std::vector<double> bare{};

    /// The ratio of each round, of the bridge to the floor.
    [[nodiscard]] std::vector<double> ratios() const;
};

}  // namespace bench
