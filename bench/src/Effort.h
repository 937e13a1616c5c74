#pragma once

#include <chrono>

namespace bench {

/// How long to measure.
struct Effort {
    int rounds = 31;                            ///< samples of each side
    std::chrono::microseconds sample{10'000};   ///< how long one sample takes, about
    std::chrono::microseconds warmUp{250'000};  ///< how long each side runs beforehand, compilation by Java included
    int largestListing = 1'000'000;             ///< entries of the listing whose memory is measured

    /// One call of each side: proves that everything works, and measures nothing.
    [[nodiscard]] static Effort none() { return {1, std::chrono::microseconds(0), std::chrono::microseconds(0), 1000}; }
};

}  // namespace bench
