#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace jstore {

/// How fast something grows, with the last seconds weighing most, and how long the rest takes at that speed. Reads no
/// clock: the caller passes the time.
class RateEstimator {
public:
    using Time = std::chrono::steady_clock::time_point;

    explicit RateEstimator(Time start) : m_start(start), m_last(start) {}

    /// Takes note of how much is done; neither the time nor the amount goes back.
    void update(Time now, std::uint64_t done);

    /// The amount in a second; empty before any time has passed.
    [[nodiscard]] std::optional<double> rate() const;

    /// How long it takes until `total` is done, rounded up; empty when nothing moves, or for more than 99 hours.
    [[nodiscard]] std::optional<std::chrono::seconds> timeLeft(std::uint64_t total) const;

private:
    Time m_start;
    Time m_last;
    std::uint64_t m_done = 0;
    double m_average = 0;  ///< counts the time before the start as standstill; rate() corrects that
};

}  // namespace jstore
