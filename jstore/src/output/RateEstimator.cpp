#include "output/RateEstimator.h"

#include <cmath>

namespace jstore {

namespace {

using Seconds = std::chrono::duration<double>;

/// What happened this long ago weighs about a third of what happens now.
constexpr Seconds Memory{5};

/// Updates that follow each other faster are taken together: their speeds would be noise.
constexpr std::chrono::milliseconds ShortestStep{50};

constexpr double LongestSeconds = 99 * 3600;

/// The weight of what happened within the last `time`.
double weightOf(Seconds time) { return 1 - std::exp(-time / Memory); }

}  // namespace

void RateEstimator::update(Time now, std::uint64_t done) {
    if (now - m_last < ShortestStep || done < m_done) {
        return;
    }
    const Seconds step = now - m_last;
    const double speed = static_cast<double>(done - m_done) / step.count();
    m_average += weightOf(step) * (speed - m_average);
    m_last = now;
    m_done = done;
}

std::optional<double> RateEstimator::rate() const {
    if (m_last == m_start) {
        return std::nullopt;
    }
    return m_average / weightOf(m_last - m_start);
}

std::optional<std::chrono::seconds> RateEstimator::timeLeft(std::uint64_t total) const {
    const std::optional<double> speed = rate();
    if (total <= m_done) {
        return std::chrono::seconds(0);
    }
    const double seconds = speed ? static_cast<double>(total - m_done) / *speed : LongestSeconds;
    // A speed of 0 gives infinity.
    if (!(seconds < LongestSeconds)) {
        return std::nullopt;
    }
    return std::chrono::seconds(static_cast<std::int64_t>(std::ceil(seconds)));
}

}  // namespace jstore
