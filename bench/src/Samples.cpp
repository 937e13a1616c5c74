#include "Samples.h"

#include <algorithm>
#include <cmath>

namespace bench {

double quantile(std::vector<double> samples, double part) {
    std::sort(samples.begin(), samples.end());
    const double place = part * static_cast<double>(samples.size() - 1);
    const auto below = static_cast<std::size_t>(std::floor(place));
    const std::size_t above = std::min(below + 1, samples.size() - 1);
    return std::lerp(samples[below], samples[above], place - std::floor(place));
}

std::vector<double> Rounds::ratios() const {
    std::vector<double> result;
    for (std::size_t i = 0; i < floor.size(); ++i) {
        result.push_back(bridge[i] / floor[i]);
    }
    return result;
}

}  // namespace bench
